// The about text in six languages, with the credits file's line ends made CR LF and its control
// bytes dropped.
#include "about/about_text.h"

namespace qv {
namespace {

// The texts are UTF-8 like the credits file; the window shows them through the wide functions,
// whatever the system's code page.
constexpr AboutWords kWords[kAboutLanguageCount] = {
    {"Acerca de Quorvex Puzzle", "Quorvex Puzzle, versión ",
     "Un juego de rompecabezas: elija una imagen, su tamaño y sus piezas, y vuelva a montarla "
     "sobre la mesa.",
     "Licencia: MIT. Este es el texto legal de la licencia, en inglés:",
     "No se han podido leer los créditos de las imágenes (CREDITS.txt).", "Cerrar"},
    {"About Quorvex Puzzle", "Quorvex Puzzle, version ",
     "A jigsaw-puzzle game: choose a picture, its size and its pieces, then put it together "
     "again on the table.",
     "Licence: MIT.", "The credits of the pictures (CREDITS.txt) could not be read.", "Close"},
    {"Sobre o Quorvex Puzzle", "Quorvex Puzzle, versão ",
     "Um jogo de quebra-cabeças: escolha uma imagem, o seu tamanho e as suas peças, e volte a "
     "montá-la na mesa.",
     "Licença: MIT. Este é o texto legal da licença, em inglês:",
     "Não foi possível ler os créditos das imagens (CREDITS.txt).", "Fechar"},
    {"Informazioni su Quorvex Puzzle", "Quorvex Puzzle, versione ",
     "Un gioco di puzzle: scegli un'immagine, la sua dimensione e i suoi pezzi, poi ricomponila "
     "sul tavolo.",
     "Licenza: MIT. Ecco il testo legale della licenza, in inglese:",
     "Impossibile leggere i crediti delle immagini (CREDITS.txt).", "Chiudi"},
    {"À propos de Quorvex Puzzle", "Quorvex Puzzle, version ",
     "Un jeu de puzzle : choisissez une image, sa taille et ses pièces, puis reconstituez-la "
     "sur la table.",
     "Licence : MIT. Voici le texte juridique de la licence, en anglais :",
     "Impossible de lire les crédits des images (CREDITS.txt).", "Fermer"},
    {"Über Quorvex Puzzle", "Quorvex Puzzle, Version ",
     "Ein Puzzlespiel: Wählen Sie ein Bild, seine Größe und seine Teile und setzen Sie es auf "
     "dem Tisch wieder zusammen.",
     "Lizenz: MIT. Hier der Rechtstext der Lizenz auf Englisch:",
     "Die Bildnachweise (CREDITS.txt) konnten nicht gelesen werden.", "Schließen"},
};

// The licence's legal wording stays in English in every language: only the original text is
// binding, so the translated sentence before it just says what it is.
constexpr char kLicenceText[] =
    "Permission is hereby granted, free of charge, to any person obtaining a copy of this "
    "software, to deal in it without restriction, including the rights to use, copy, modify, "
    "merge, publish, distribute, sublicense and sell copies of it, provided that the copyright "
    "notice and this permission notice are included in all copies. The software is provided "
    "\"as is\", without warranty of any kind.";

std::string WithWindowsLineEnds(const std::string& text) {
  std::string out;
  out.reserve(text.size() + text.size() / 16);
  const std::size_t length = text.size() < kMaxCreditsBytes ? text.size() : kMaxCreditsBytes;
  for (std::size_t i = 0; i < length; ++i) {
    const unsigned char c = static_cast<unsigned char>(text[i]);
    if (c == '\r') continue;
    if (c == '\n') {
      out += "\r\n";
    } else if (c == '\t' || c >= 0x20) {
      out += static_cast<char>(c);
    }
  }
  if (length < text.size()) out += "\r\n...";
  return out;
}

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

}  // namespace

const AboutWords& AboutWordsFor(int language) {
  if (language < 0 || language >= kAboutLanguageCount) language = kAboutEnglish;
  return kWords[language];
}

int AboutLanguageFromCommandLine(std::string_view commandLine) {
  while (!commandLine.empty() && IsBlank(commandLine.front())) commandLine.remove_prefix(1);
  while (!commandLine.empty() && IsBlank(commandLine.back())) commandLine.remove_suffix(1);
  if (commandLine.size() != 1) return kAboutEnglish;
  const int digit = commandLine[0] - '0';
  return digit >= 0 && digit < kAboutLanguageCount ? digit : kAboutEnglish;
}

std::string AboutText(int language, const std::string* credits) {
  const AboutWords& words = AboutWordsFor(language);
  std::string text = words.version;
  text += kGameVersion;
  text += "\r\n\r\n";
  text += words.description;
  text += "\r\n\r\n";
  text += words.licence;
  text += ' ';
  text += kLicenceText;
  text += "\r\n\r\n";
  if (credits) {
    text += WithWindowsLineEnds(*credits);
  } else {
    text += words.noCredits;
  }
  return text;
}

}  // namespace qv
