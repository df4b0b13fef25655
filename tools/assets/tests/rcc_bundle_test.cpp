// The Qt resource-bundle reader: real layouts of both node sizes, and damaged bundles refused.
#include <gtest/gtest.h>
#include <zlib.h>

#include <cstdio>
#include <string>

#include "assets/rcc_bundle.h"
#include "system/random.h"

namespace qv::assets {
namespace {

void Be16(std::vector<std::uint8_t>& out, unsigned v) {
  out.push_back(static_cast<std::uint8_t>(v >> 8));
  out.push_back(static_cast<std::uint8_t>(v));
}
void Be32(std::vector<std::uint8_t>& out, std::uint32_t v) {
  Be16(out, v >> 16);
  Be16(out, v & 0xFFFF);
}

// A bundle laid out as Qt's resource compiler lays it out: the root folder holds "animals",
// which holds "notes.txt" (stored plain) and "café.bin" (zlib-compressed).
struct Bundle {
  int version = 2;
  bool compressBinary = true;
  std::uint16_t binFlags() const { return compressBinary ? 1 : 0; }
  std::vector<std::uint8_t> text{'h', 'e', 'l', 'l', 'o'};
  std::vector<std::uint8_t> binary = std::vector<std::uint8_t>(3000, 0);

  std::vector<std::uint8_t> Build() const {
    std::vector<std::uint8_t> names, data, tree;
    auto name = [&](const std::u16string& s) {
      const auto at = static_cast<std::uint32_t>(names.size());
      Be16(names, static_cast<unsigned>(s.size()));
      Be32(names, 0);  // hash: not needed for reading
      for (char16_t c : s) Be16(names, c);
      return at;
    };
    auto blob = [&](const std::vector<std::uint8_t>& bytes, bool compressed) {
      const auto at = static_cast<std::uint32_t>(data.size());
      std::vector<std::uint8_t> stored = bytes;
      if (compressed) {
        uLongf size = compressBound(bytes.size());
        std::vector<std::uint8_t> packed(size);
        ::compress(packed.data(), &size, bytes.data(), bytes.size());
        stored.clear();
        Be32(stored, static_cast<std::uint32_t>(bytes.size()));
        stored.insert(stored.end(), packed.begin(), packed.begin() + static_cast<long>(size));
      }
      Be32(data, static_cast<std::uint32_t>(stored.size()));
      data.insert(data.end(), stored.begin(), stored.end());
      return at;
    };
    auto folder = [&](std::uint32_t nameAt, std::uint32_t children, std::uint32_t first) {
      Be32(tree, nameAt);
      Be16(tree, 2);
      Be32(tree, children);
      Be32(tree, first);
      if (version >= 2) Be32(tree, 0), Be32(tree, 0);
    };
    auto file = [&](std::uint32_t nameAt, std::uint16_t flags, std::uint32_t dataAt) {
      Be32(tree, nameAt);
      Be16(tree, flags);
      Be16(tree, 0);  // territory
      Be16(tree, 0);  // language
      Be32(tree, dataAt);
      if (version >= 2) Be32(tree, 0), Be32(tree, 0);
    };
    folder(0, 1, 1);
    folder(name(u"animals"), 2, 2);
    file(name(u"notes.txt"), 0, blob(text, false));
    file(name(u"caf\u00e9.bin"), binFlags(), blob(binary, compressBinary));

    std::vector<std::uint8_t> out = {'q', 'r', 'e', 's'};
    Be32(out, static_cast<std::uint32_t>(version));
    const std::uint32_t header = version >= 3 ? 24 : 20;
    Be32(out, header);
    Be32(out, header + static_cast<std::uint32_t>(tree.size()));
    Be32(out, header + static_cast<std::uint32_t>(tree.size() + data.size()));
    if (version >= 3) Be32(out, 0);
    out.insert(out.end(), tree.begin(), tree.end());
    out.insert(out.end(), data.begin(), data.end());
    out.insert(out.end(), names.begin(), names.end());
    return out;
  }
};

TEST(RccBundle, ListsAndReadsPlainAndCompressedFilesInEveryNodeLayout) {
  for (int version : {1, 2, 3}) {
    SCOPED_TRACE("version " + std::to_string(version));
    Bundle b;
    b.version = version;
    for (std::size_t i = 0; i < b.binary.size(); ++i) b.binary[i] = static_cast<std::uint8_t>(i * i);
    RccBundle bundle;
    std::string error;
    ASSERT_TRUE(bundle.Parse(b.Build(), error)) << error;
    std::vector<std::string> paths;
    ASSERT_TRUE(bundle.List(paths, error)) << error;
    EXPECT_EQ(paths, (std::vector<std::string>{"animals/notes.txt", "animals/caf\xc3\xa9.bin"}));
    std::vector<std::uint8_t> out;
    ASSERT_TRUE(bundle.Read("animals/notes.txt", out, error)) << error;
    EXPECT_EQ(out, b.text);
    ASSERT_TRUE(bundle.Read("animals/caf\xc3\xa9.bin", out, error)) << error;
    EXPECT_EQ(out, b.binary);
  }
}

TEST(RccBundle, MissingPathsAndFoldersAreNamedInTheRefusal) {
  RccBundle bundle;
  std::string error;
  ASSERT_TRUE(bundle.Parse(Bundle().Build(), error));
  std::vector<std::uint8_t> out;
  EXPECT_FALSE(bundle.Read("animals/zebra.webp", out, error));
  EXPECT_NE(error.find("zebra.webp"), std::string::npos) << error;
  EXPECT_FALSE(bundle.Read("animals", out, error));
  EXPECT_NE(error.find("folder"), std::string::npos) << error;
  EXPECT_FALSE(bundle.Read("animals/notes.txt/deeper", out, error));
}

TEST(RccBundle, RefusesWhatIsNotABundle) {
  RccBundle bundle;
  std::string error;
  EXPECT_FALSE(bundle.Parse({}, error));
  EXPECT_FALSE(bundle.Parse(std::vector<std::uint8_t>(64, 'q'), error));
  std::vector<std::uint8_t> future = Bundle().Build();
  future[7] = 9;  // version 9
  EXPECT_FALSE(bundle.Parse(future, error));
  EXPECT_NE(error.find("version"), std::string::npos);
  EXPECT_FALSE(bundle.Load("/nonexistent/folder/erase.rcc", error));
}

TEST(RccBundle, AFolderThatPointsBackAtItselfIsRefusedNotFollowed) {
  std::vector<std::uint8_t> bytes = Bundle().Build();
  // Node 1 ("animals") claims its children start at node 1.
  const std::size_t firstChild = 20 + 22 * 1 + 10;
  bytes[firstChild + 3] = 1;
  RccBundle bundle;
  std::string error;
  ASSERT_TRUE(bundle.Parse(bytes, error)) << error;
  std::vector<std::string> paths;
  EXPECT_FALSE(bundle.List(paths, error));
  std::vector<std::uint8_t> out;
  EXPECT_FALSE(bundle.Read("animals/notes.txt", out, error));
}

TEST(RccBundle, ALyingInflatedLengthIsRefused) {
  Bundle b;
  std::vector<std::uint8_t> bytes = b.Build();
  RccBundle bundle;
  std::string error;
  ASSERT_TRUE(bundle.Parse(bytes, error));
  // The compressed file's data block starts after the text's (4 + 5 bytes); its first four
  // bytes after the block length give the inflated size.
  const std::size_t dataStart = 20 + 4 * 22;
  const std::size_t inflatedAt = dataStart + 9 + 4;
  for (std::uint32_t claimed : {2999u, 3001u, 0x7FFFFFFFu}) {
    std::vector<std::uint8_t> lying = bytes;
    lying[inflatedAt] = static_cast<std::uint8_t>(claimed >> 24);
    lying[inflatedAt + 1] = static_cast<std::uint8_t>(claimed >> 16);
    lying[inflatedAt + 2] = static_cast<std::uint8_t>(claimed >> 8);
    lying[inflatedAt + 3] = static_cast<std::uint8_t>(claimed);
    ASSERT_TRUE(bundle.Parse(lying, error));
    std::vector<std::uint8_t> out;
    EXPECT_FALSE(bundle.Read("animals/caf\xc3\xa9.bin", out, error)) << claimed;
  }
}

// Every prefix, and many random corruptions, must end in a clean answer: never a crash or a
// read outside the bundle (the sanitiser build checks the latter).
TEST(RccBundle, DamagedBundlesNeverCrash) {
  const std::vector<std::uint8_t> whole = Bundle().Build();
  auto exercise = [](const std::vector<std::uint8_t>& bytes) {
    RccBundle bundle;
    std::string error;
    if (!bundle.Parse(bytes, error)) return;
    std::vector<std::string> paths;
    bundle.List(paths, error);
    std::vector<std::uint8_t> out;
    bundle.Read("animals/notes.txt", out, error);
    bundle.Read("animals/caf\xc3\xa9.bin", out, error);
    for (const std::string& p : paths) bundle.Read(p, out, error);
  };
  for (std::size_t size = 0; size < whole.size(); ++size) {
    exercise(std::vector<std::uint8_t>(whole.begin(), whole.begin() + static_cast<long>(size)));
  }
  const std::uint64_t seed = 20240611;
  std::printf("corruption seed %llu\n", static_cast<unsigned long long>(seed));
  RandomSource random(seed);
  for (int round = 0; round < 3000; ++round) {
    std::vector<std::uint8_t> bytes = whole;
    const int changes = 1 + static_cast<int>(random.Uniform() * 4);
    for (int c = 0; c < changes; ++c) {
      // Aim most changes at the header and tree, where the offsets live.
      const double r = random.Uniform();
      const std::size_t limit = r < 0.8 ? std::min<std::size_t>(bytes.size(), 20 + 4 * 22) : bytes.size();
      bytes[static_cast<std::size_t>(random.Uniform() * limit)] = static_cast<std::uint8_t>(random.NextBits());
    }
    exercise(bytes);
  }
}

}  // namespace
}  // namespace qv::assets
