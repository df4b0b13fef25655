// The pictures that carry words, one per language: Spanish, English, Portuguese, Italian,
// French, German (the game's language index 0 to 5, added to each picture's base).
#include "assets/ui_words.h"

#include <algorithm>
#include <cmath>

#include "assets/ui_panels.h"
#include "assets/ui_strips.h"

namespace qv::assets {

const std::vector<WordSlot>& WordSlots() {
  // Where the string table has the same text ("Number of pieces", the honour roll), the words
  // are taken from it, so that the screens and their pictures agree.
  static const std::vector<WordSlot> slots = {
      {2060, WordLook::kWoodButton, 180, 56, {16, 10, 148, 34}, 24,
       {"Nueva partida", "New game", "Novo jogo", "Nuova partita", "Nouvelle partie", "Neues Spiel"}},
      {1000, WordLook::kTab, 105, 46, {9, 8, 88, 30}, 16,
       {"Imagen", "Picture", "Imagem", "Immagine", "Image", "Bild"}},
      {1010, WordLook::kTab, 105, 46, {9, 8, 88, 30}, 16,
       {"Tamaño", "Size", "Tamanho", "Dimensione", "Taille", "Größe"}},
      {1020, WordLook::kTab, 105, 46, {9, 8, 88, 30}, 16,
       {"Piezas", "Pieces", "Peças", "Pezzi", "Pièces", "Teile"}},
      {1030, WordLook::kTab, 105, 46, {9, 8, 88, 30}, 16,
       {"Forma", "Shape", "Formato", "Forma", "Forme", "Form"}},
      {2000, WordLook::kParchmentTitle, 228, 48, {10, 6, 208, 32}, 20,
       {"Elige una imagen", "Choose a picture", "Escolha uma imagem", "Scegli un'immagine",
        "Choisissez une image", "Bild auswählen"}},
      {2010, WordLook::kParchmentTitle, 228, 48, {10, 6, 208, 32}, 20,
       {"Tamaño de la imagen", "Picture size", "Tamanho da imagem", "Dimensione dell'immagine",
        "Taille de l'image", "Bildgröße"}},
      {2020, WordLook::kParchmentTitle, 228, 48, {10, 6, 208, 32}, 20,
       {"Número de piezas", "Number of pieces", "Número de peças", "Numero di pezzi", "Nombre de pièces",
        "Anzahl der Teile"}},
      {2030, WordLook::kParchmentTitle, 228, 48, {10, 6, 208, 32}, 20,
       {"Forma de las piezas", "Piece shape", "Formato das peças", "Forma dei pezzi", "Forme des pièces",
        "Form der Teile"}},
      {2040, WordLook::kFileScreen, 520, 300, {20, 10, 480, 40}, 30,
       {"Abrir partida", "Open game", "Abrir jogo", "Apri partita", "Ouvrir une partie", "Spiel laden"}},
      {2050, WordLook::kFileScreen, 520, 300, {20, 10, 480, 40}, 30,
       {"Guardar partida", "Save game", "Salvar jogo", "Salva partita", "Enregistrer la partie",
        "Spiel speichern"}},
      {2090, WordLook::kWoodTitle, 500, 60, {24, 10, 452, 40}, 36,
       {"Cuadro de Honor", "Honour roll", "Quadro de Honra", "Albo d'onore", "Tableau d'honneur",
        "Ehrenliste"}},
      {2100, WordLook::kWoodTitle, 160, 45, {10, 7, 140, 31}, 26,
       {"Música", "Music", "Música", "Musica", "Musique", "Musik"}},
      {2110, WordLook::kVerticalLabel, 25, 140, {6, 3, 128, 19}, 16,
       {"Herramientas", "Tools", "Ferramentas", "Strumenti", "Outils", "Werkzeuge"}},
      {2120, WordLook::kWoodTitle, 104, 25, {5, 3, 94, 19}, 16,
       {"Opciones", "Options", "Opções", "Opzioni", "Options", "Optionen"}},
      {2130, WordLook::kWoodTitle, 260, 40, {10, 5, 240, 30}, 24,
       {"Textura de la mesa", "Table texture", "Textura da mesa", "Superficie del tavolo",
        "Texture de la table", "Tischoberfläche"}},
  };
  return slots;
}

FittedText FitWord(const WordSlot& slot, int language) {
  Canvas scratch(1, 1);
  return FitText(scratch.cr(), slot.words[language], slot.textBox, 0, slot.maxSize);
}

namespace {

Box Whole(int w, int h) { return {0, 0, static_cast<double>(w), static_cast<double>(h)}; }

FittedText Shifted(FittedText fit, double by) {
  fit.left += by;
  fit.top += by;
  fit.originX += by;
  fit.originY += by;
  return fit;
}

RgbImage WoodButton(const WordSlot& slot, const std::string& word, const FittedText& fit) {
  return ColumnStrip(slot.width, slot.height, 3, [&](cairo_t* cr, int w, int h, int frame) {
    FillWood(cr, Whole(w, h), 5);
    const Face face = kPushFaces[frame];
    ButtonBody(cr, Whole(w, h), 12, face);
    const double sink = face == Face::kPressed ? ButtonSink(Whole(w, h)) : 0;
    DrawFittedText(cr, word, Shifted(fit, sink), face == Face::kHover ? ui::kBrassLight : ui::kCream, true);
  });
}

RgbImage Tab(const WordSlot& slot, const std::string& word, const FittedText& fit) {
  return ColumnStrip(slot.width, slot.height, 4, [&](cairo_t* cr, int w, int h, int frame) {
    const bool checked = frame >= 2, hover = frame % 2 == 1;
    // The tab column's dark wood behind; a checked tab is parchment and runs on into the
    // panel on its right, so it has no right edge.
    FillWood(cr, Whole(w, h), 1, 0.7);
    const Box tab{3, 2, w + 10.0, h - 4.0};
    if (checked) {
      BrassRim(cr, tab, 10, 3);
      FillParchment(cr, {tab.x + 3, tab.y + 3, tab.w - 3, tab.h - 6}, 7);
    } else {
      cairo_save(cr);
      RoundedRectPath(cr, tab, 10);
      cairo_clip(cr);
      ButtonBody(cr, tab, 10, Face::kNormal);
      cairo_restore(cr);
    }
    if (hover) {
      cairo_save(cr);
      RoundedRectPath(cr, {tab.x + 1.5, tab.y + 1.5, tab.w - 3, tab.h - 3}, 9);
      cairo_set_line_width(cr, 3);
      SetShade(cr, ui::kGlow, 0.9);
      cairo_stroke(cr);
      cairo_restore(cr);
    }
    const Shade ink = checked ? ui::kInk : hover ? ui::kBrassLight : ui::kCream;
    DrawFittedText(cr, word, fit, ink, true);
  });
}

RgbImage ParchmentTitle(const WordSlot& slot, const std::string& word, const FittedText& fit) {
  Canvas canvas(slot.width, slot.height);
  cairo_t* cr = canvas.cr();
  FillParchmentGround(cr, Whole(slot.width, slot.height));
  const double y = slot.height - 6.5;
  cairo_move_to(cr, 14, y);
  cairo_line_to(cr, slot.width - 14, y);
  cairo_set_line_width(cr, 2);
  SetShade(cr, ui::kBrass);
  cairo_stroke(cr);
  DrawFittedText(cr, word, fit, ui::kInk, true);
  return canvas.Pixels();
}

RgbImage WoodTitle(const WordSlot& slot, const std::string& word, const FittedText& fit) {
  Canvas canvas(slot.width, slot.height);
  cairo_t* cr = canvas.cr();
  const bool small = slot.height < 30;
  // The small bar labels continue the bars' own wood; the screen titles sit on a plaque.
  FillWood(cr, Whole(slot.width, slot.height), small ? 2 : 1, small ? 1.1 : 1.0);
  if (!small) BrassRim(cr, Whole(slot.width, slot.height), 8, 3);
  DrawFittedText(cr, word, fit, ui::kCream, true);
  return canvas.Pixels();
}

RgbImage VerticalLabel(const WordSlot& slot, const std::string& word, const FittedText& fit) {
  Canvas canvas(slot.width, slot.height);
  cairo_t* cr = canvas.cr();
  FillWood(cr, Whole(slot.width, slot.height), 2, 1.1, true);
  // Turned a quarter to the left: the word reads from the bottom up along the tool strip.
  cairo_translate(cr, 0, slot.height);
  cairo_rotate(cr, -M_PI / 2);
  DrawFittedText(cr, word, fit, ui::kCream, true);
  return canvas.Pixels();
}

RgbImage FileScreen(const WordSlot& slot, const std::string& word, const FittedText& fit) {
  Canvas canvas(slot.width, slot.height);
  static const RgbImage open = FileScreenBase(false);
  static const RgbImage save = FileScreenBase(true);
  canvas.Place(slot.base == 2050 ? save : open, 0, 0);
  DrawFittedText(canvas.cr(), word, fit, ui::kCream, true);
  return canvas.Pixels();
}

}  // namespace

RgbImage DrawWordPicture(const WordSlot& slot, int language) {
  const std::string& word = slot.words[language];
  const FittedText fit = FitWord(slot, language);
  switch (slot.look) {
    case WordLook::kWoodButton: return WoodButton(slot, word, fit);
    case WordLook::kTab: return Tab(slot, word, fit);
    case WordLook::kParchmentTitle: return ParchmentTitle(slot, word, fit);
    case WordLook::kWoodTitle: return WoodTitle(slot, word, fit);
    case WordLook::kVerticalLabel: return VerticalLabel(slot, word, fit);
    case WordLook::kFileScreen: return FileScreen(slot, word, fit);
  }
  return RgbImage();
}

}  // namespace qv::assets
