// Checks of the help pages in data/help: a page for every language, links and pictures that lead
// to real files, a declared language and encoding, and every topic on every page.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

const fs::path kHelpRoot = QV_HELP_SOURCE_DIR;

// Folder n holds the page the game opens for language n.
constexpr const char* kLanguageCodes[] = {"es", "en", "pt", "it", "fr", "de"};

// Section ids that every language's page shares, so that links between languages keep their place.
constexpr const char* kTopics[] = {"start", "photo", "play", "score", "files", "honour",
                                   "textures", "music", "print", "languages"};

// Screenshots are dropped into Help/shots when the screens can be photographed; until then the
// pages show the pictures' descriptions in their place.
const std::set<std::string> kScreenshots = {
    "../shots/board.png", "../shots/new-game.png", "../shots/box.png",
    "../shots/texture.png", "../shots/option-bar.png", "../shots/file-screen.png"};

struct Tag {
  std::string name;
  std::map<std::string, std::string> attributes;
};

std::string Lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

std::string ReadAll(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

bool IsUtf8(const std::string& text) {
  for (std::size_t i = 0; i < text.size();) {
    const unsigned char lead = static_cast<unsigned char>(text[i]);
    const std::size_t length = lead < 0x80 ? 1 : (lead >> 5) == 0x6 ? 2 : (lead >> 4) == 0xE ? 3
                             : (lead >> 3) == 0x1E ? 4 : 0;
    if (length == 0 || i + length > text.size()) return false;
    for (std::size_t k = 1; k < length; ++k) {
      if ((static_cast<unsigned char>(text[i + k]) & 0xC0) != 0x80) return false;
    }
    i += length;
  }
  return true;
}

bool IsSpace(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

// The start tags of a page with their attributes (names lower-cased, values as written);
// comments, end tags and the doctype are skipped.
std::vector<Tag> StartTags(const std::string& html) {
  std::vector<Tag> tags;
  std::size_t i = 0;
  while ((i = html.find('<', i)) != std::string::npos) {
    if (html.compare(i, 4, "<!--") == 0) {
      const std::size_t end = html.find("-->", i + 4);
      i = end == std::string::npos ? html.size() : end + 3;
      continue;
    }
    ++i;
    if (i >= html.size() || !std::isalpha(static_cast<unsigned char>(html[i]))) continue;
    Tag tag;
    while (i < html.size() && (std::isalnum(static_cast<unsigned char>(html[i])))) {
      tag.name += static_cast<char>(std::tolower(static_cast<unsigned char>(html[i++])));
    }
    while (i < html.size() && html[i] != '>') {
      if (IsSpace(html[i]) || html[i] == '/') {
        ++i;
        continue;
      }
      std::string name;
      while (i < html.size() && !IsSpace(html[i]) && html[i] != '=' && html[i] != '>' &&
             html[i] != '/') {
        name += static_cast<char>(std::tolower(static_cast<unsigned char>(html[i++])));
      }
      std::string value;
      while (i < html.size() && IsSpace(html[i])) ++i;
      if (i < html.size() && html[i] == '=') {
        ++i;
        while (i < html.size() && IsSpace(html[i])) ++i;
        if (i < html.size() && (html[i] == '"' || html[i] == '\'')) {
          const char quote = html[i++];
          const std::size_t end = html.find(quote, i);
          value = html.substr(i, end == std::string::npos ? std::string::npos : end - i);
          i = end == std::string::npos ? html.size() : end + 1;
        } else {
          while (i < html.size() && !IsSpace(html[i]) && html[i] != '>') value += html[i++];
        }
      }
      tag.attributes[name] = value;
    }
    tags.push_back(std::move(tag));
  }
  return tags;
}

struct Page {
  fs::path path;
  std::string text;
  std::vector<Tag> tags;
  std::set<std::string> ids;
};

Page LoadPage(const fs::path& path) {
  Page page{path, ReadAll(path), {}, {}};
  page.tags = StartTags(page.text);
  for (const Tag& tag : page.tags) {
    if (auto id = tag.attributes.find("id"); id != tag.attributes.end()) page.ids.insert(id->second);
  }
  return page;
}

std::vector<fs::path> FilesEndingIn(const std::string& extension) {
  std::vector<fs::path> files;
  for (const auto& entry : fs::recursive_directory_iterator(kHelpRoot)) {
    if (entry.is_regular_file() && Lower(entry.path().extension().string()) == extension) {
      files.push_back(entry.path());
    }
  }
  std::sort(files.begin(), files.end());
  return files;
}

std::string Relative(const fs::path& path) { return fs::relative(path, kHelpRoot).generic_string(); }

// The language folder (0-5) that holds a page, or -1 for a page elsewhere.
int LanguageOf(const fs::path& page) {
  const std::string folder = page.parent_path().filename().string();
  if (folder.size() == 1 && folder[0] >= '0' && folder[0] <= '5') return folder[0] - '0';
  return -1;
}

TEST(HelpPages, EveryLanguageFolderHasItsIndexPage) {
  for (int language = 0; language < 6; ++language) {
    const fs::path page = kHelpRoot / std::to_string(language) / "Index.htm";
    EXPECT_TRUE(fs::is_regular_file(page)) << page;
  }
}

TEST(HelpPages, EachPageDeclaresItsLanguageAndUtf8) {
  const auto pages = FilesEndingIn(".htm");
  ASSERT_FALSE(pages.empty());
  for (const fs::path& path : pages) {
    SCOPED_TRACE(Relative(path));
    const Page page = LoadPage(path);
    EXPECT_TRUE(IsUtf8(page.text));
    std::string lang;
    bool utf8Declared = false;
    for (const Tag& tag : page.tags) {
      if (tag.name == "html" && tag.attributes.count("lang")) lang = tag.attributes.at("lang");
      if (tag.name != "meta") continue;
      if (tag.attributes.count("charset") && Lower(tag.attributes.at("charset")) == "utf-8") {
        utf8Declared = true;
      }
      if (tag.attributes.count("content") &&
          Lower(tag.attributes.at("content")).find("charset=utf-8") != std::string::npos) {
        utf8Declared = true;
      }
    }
    EXPECT_TRUE(utf8Declared);
    // Browsers look for the encoding only in the first 1024 bytes.
    EXPECT_NE(Lower(page.text.substr(0, 1024)).find("utf-8"), std::string::npos);
    const int language = LanguageOf(path);
    if (language >= 0) {
      EXPECT_EQ(lang, kLanguageCodes[language]);
    } else {
      EXPECT_FALSE(lang.empty());
    }
  }
}

TEST(HelpPages, LinksAndPicturesLeadToFilesInTheHelpFolder) {
  for (const fs::path& path : FilesEndingIn(".htm")) {
    SCOPED_TRACE(Relative(path));
    const Page page = LoadPage(path);
    int references = 0;
    int pictures = 0;
    for (const Tag& tag : page.tags) {
      for (const char* attribute : {"href", "src"}) {
        const auto found = tag.attributes.find(attribute);
        if (found == tag.attributes.end()) continue;
        const std::string& reference = found->second;
        SCOPED_TRACE(reference);
        ++references;
        EXPECT_FALSE(reference.empty());
        // Everything lives beside the pages: no address on the net, no Windows-only separator.
        EXPECT_EQ(reference.find(':'), std::string::npos);
        EXPECT_NE(reference.rfind("//", 0), 0u);
        EXPECT_EQ(reference.find('\\'), std::string::npos);
        const std::size_t hash = reference.find('#');
        const std::string file = reference.substr(0, hash);
        const std::string fragment = hash == std::string::npos ? "" : reference.substr(hash + 1);
        if (tag.name == "img") {
          ++pictures;
          EXPECT_FALSE(tag.attributes.count("alt") == 0 || tag.attributes.at("alt").empty());
        }
        if (kScreenshots.count(file)) {
          EXPECT_EQ(tag.name, "img");
          continue;
        }
        if (file.empty()) {
          EXPECT_TRUE(page.ids.count(fragment)) << "no element with this id on the page";
          continue;
        }
        const fs::path target = (path.parent_path() / file).lexically_normal();
        if (!fs::is_regular_file(target)) {
          ADD_FAILURE() << "no such file";
          continue;
        }
        EXPECT_EQ(Relative(target).rfind("..", 0), std::string::npos) << "outside the help folder";
        if (!fragment.empty()) {
          EXPECT_TRUE(LoadPage(target).ids.count(fragment));
        }
      }
    }
    EXPECT_GT(references, 0);
    if (LanguageOf(path) >= 0) {
      EXPECT_EQ(pictures, static_cast<int>(kScreenshots.size()));
    }
  }
}

TEST(HelpPages, StyleSheetsReferToFilesInTheHelpFolder) {
  for (const fs::path& path : FilesEndingIn(".css")) {
    SCOPED_TRACE(Relative(path));
    const std::string css = ReadAll(path);
    EXPECT_TRUE(IsUtf8(css));
    EXPECT_EQ(Lower(css).find("@import"), std::string::npos);
    for (std::size_t at = css.find("url("); at != std::string::npos; at = css.find("url(", at + 4)) {
      std::string reference = css.substr(at + 4, css.find(')', at) - at - 4);
      reference.erase(std::remove(reference.begin(), reference.end(), '"'), reference.end());
      reference.erase(std::remove(reference.begin(), reference.end(), '\''), reference.end());
      SCOPED_TRACE(reference);
      EXPECT_EQ(reference.find(':'), std::string::npos);
      EXPECT_TRUE(fs::is_regular_file(path.parent_path() / reference));
    }
  }
}

TEST(HelpPages, EveryLanguageCoversEveryTopicOnceWithAContentsEntry) {
  for (int language = 0; language < 6; ++language) {
    const fs::path path = kHelpRoot / std::to_string(language) / "Index.htm";
    SCOPED_TRACE(Relative(path));
    const Page page = LoadPage(path);
    std::map<std::string, int> idCount;
    std::set<std::string> fragmentLinks;
    for (const Tag& tag : page.tags) {
      if (tag.attributes.count("id")) ++idCount[tag.attributes.at("id")];
      if (tag.name == "a" && tag.attributes.count("href") && tag.attributes.at("href").rfind('#', 0) == 0) {
        fragmentLinks.insert(tag.attributes.at("href").substr(1));
      }
    }
    for (const auto& [id, count] : idCount) EXPECT_EQ(count, 1) << "id used twice: " << id;
    for (const char* topic : kTopics) {
      EXPECT_EQ(idCount[topic], 1) << topic;
      EXPECT_TRUE(fragmentLinks.count(topic)) << "no contents entry for " << topic;
    }
    // Every language links to every other one, so the pages the game never opens are found too.
    for (int other = 0; other < 6; ++other) {
      if (other == language) continue;
      const std::string link = "../" + std::to_string(other) + "/Index.htm";
      EXPECT_NE(page.text.find("href=\"" + link + "\""), std::string::npos) << link;
    }
  }
}

}  // namespace
