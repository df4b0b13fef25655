// FileExists and FileList: folder listing with Windows-style wildcards, names packed in a block.
#include "graphics/file_list.h"

#include <cstdlib>
#include <exception>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace qv {

namespace {

constexpr std::int32_t kBlockGrowth = 50;

struct SearchPattern {
  std::string folder;
  std::string namePattern;
};

// Splits at the last separator. The folder keeps its trailing separator so that "/x*" searches
// the root and "C:\x*" the drive's root; backslashes become slashes, which both systems accept.
SearchPattern SplitPattern(const char* pattern) {
  const std::string text(pattern);
  const std::size_t cut = text.find_last_of("\\/");
  if (cut == std::string::npos) return {".", text};
  std::string folder = text.substr(0, cut + 1);
  for (char& c : folder) {
    if (c == '\\') c = '/';
  }
  return {folder, text.substr(cut + 1)};
}

char FoldCase(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

// '*' and '?' matching without regard to ASCII case, backtracking only to the last '*'.
bool WildcardMatch(std::string_view pattern, std::string_view name) {
  std::size_t p = 0;
  std::size_t n = 0;
  std::size_t starAt = std::string_view::npos;
  std::size_t starName = 0;
  while (n < name.size()) {
    if (p < pattern.size() && (pattern[p] == '?' || FoldCase(pattern[p]) == FoldCase(name[n]))) {
      ++p;
      ++n;
    } else if (p < pattern.size() && pattern[p] == '*') {
      starAt = p++;
      starName = n;
    } else if (starAt != std::string_view::npos) {
      p = starAt + 1;
      n = ++starName;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == '*') ++p;
  return p == pattern.size();
}

// Windows lets "name.*" match a name without any extension (so "*.*" lists everything).
bool NameMatches(std::string_view pattern, std::string_view name) {
  if (WildcardMatch(pattern, name)) return true;
  return pattern.size() >= 2 && pattern.substr(pattern.size() - 2) == ".*" &&
         name.find('.') == std::string_view::npos &&
         WildcardMatch(pattern.substr(0, pattern.size() - 2), name);
}

// Calls visit(name) for every entry of the folder whose name matches, in the order the system
// lists them, until visit returns false. Entries whose names cannot be converted are skipped.
template <typename Visit>
void ForEachMatch(const char* pattern, Visit visit) {
  const SearchPattern search = SplitPattern(pattern);
  std::error_code error;
  std::filesystem::directory_iterator entry(std::filesystem::path(search.folder), error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    std::string name;
    try {
      name = entry->path().filename().string();
    } catch (const std::exception&) {
      continue;
    }
    if (NameMatches(search.namePattern, name) && !visit(name)) return;
  }
}

}  // namespace

bool FileExists(const char* pattern) {
  if (!pattern) return false;
  bool found = false;
  try {
    ForEachMatch(pattern, [&found](const std::string&) {
      found = true;
      return false;
    });
  } catch (const std::exception&) {
    return false;
  }
  return found;
}

FileList::~FileList() { std::free(block_); }

bool FileList::EnsureCapacity(std::int64_t needed) {
  while (capacity_ < needed) {
    if (capacity_ > INT32_MAX - kBlockGrowth) return false;
    void* grown = std::realloc(block_, static_cast<std::size_t>(capacity_) + kBlockGrowth);
    if (!grown) return false;
    block_ = static_cast<std::uint8_t*>(grown);
    capacity_ += kBlockGrowth;
  }
  return true;
}

// Writes one record at position and moves position past it. Before each character the block
// keeps room for that character, the record's terminator and the list's final zero.
bool FileList::AppendRecord(std::int64_t& position, const std::string& name) {
  const auto length = static_cast<std::int64_t>(name.size());
  // A 254-character name would need a length byte of 256; the walk would read it as the end.
  if (length >= kMaxNameChars) return false;
  for (std::int64_t k = 0; k < length; ++k) {
    if (!EnsureCapacity(position + k + 4)) return false;
    block_[position + 1 + k] = static_cast<std::uint8_t>(name[static_cast<std::size_t>(k)]);
  }
  if (!EnsureCapacity(position + length + 3)) return false;
  block_[position + 1 + length] = 0;
  block_[position] = static_cast<std::uint8_t>(length + 2);
  position += length + 2;
  ++count_;
  return true;
}

bool FileList::Build(const char* pattern) {
  count_ = 0;
  valid_ = 0;
  if (!pattern) return false;
  bool matched = false;
  bool failed = false;
  std::int64_t position = 0;
  try {
    ForEachMatch(pattern, [&](const std::string& name) {
      matched = true;
      // The block is kept between listings; the first one starts it at one growth step.
      if (!block_ && !EnsureCapacity(kBlockGrowth)) {
        failed = true;
        return false;
      }
      if (!AppendRecord(position, name)) {
        failed = true;
        return false;
      }
      return true;
    });
  } catch (const std::exception&) {
    return false;
  }
  if (!matched || failed) return false;
  block_[position] = 0;
  valid_ = 1;
  return true;
}

std::vector<std::string> FileList::Names() const {
  std::vector<std::string> names;
  if (!IsValid()) return names;
  for (const std::uint8_t* record = block_; record[0] != 0; record += record[0]) {
    names.emplace_back(reinterpret_cast<const char*>(record + 1));
  }
  return names;
}

}  // namespace qv
