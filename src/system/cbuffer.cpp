// The text and path buffer: exact growth, the 1000-character limit and the overrun checks.
#include "system/cbuffer.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "system/assert.h"

namespace qv {

namespace {

constexpr const char* kNoZeroInBlock =
    "este buffer es invalido, probablemente se uso este buffer para llamar un api, y fue muy "
    "pequeño de tamaño\n";
constexpr const char* kTextLongerThanLength =
    "este buffer es invalido, probablemente se uso este buffer para llamar un api, y no se llamo "
    "RecalculateSize para recalcular su tamaño\n";
constexpr const char* kLengthAboveCapacity =
    "estos valores son invalidos, probablemente se trate de un error el la libreria\n";
constexpr const char* kLengthBelowOne = "este valor aqui es invalido\n";

// Characters before the first zero within the first `limit` bytes, or -1 when there is none.
std::int32_t CountChars(const char* text, std::int32_t limit) {
  for (std::int32_t i = 0; i < limit; ++i) {
    if (text[i] == '\0') return i;
  }
  return -1;
}

// Characters of a caller's text, or -1 when it has kTextLimit characters or more.
std::int32_t MeasureText(const char* text) { return CountChars(text, CBuffer::kTextLimit); }

char* AllocateBlock(std::int32_t bytes, bool zeroed) {
  void* block = zeroed ? std::calloc(static_cast<std::size_t>(bytes), 1)
                       : std::malloc(static_cast<std::size_t>(bytes));
  QV_CHECK(block != nullptr, "CBuffer: out of memory");
  return static_cast<char*>(block);
}

struct Decimal {
  char digits[12];  // "-2147483648" is the longest
  std::int32_t count;
};

Decimal FormatDecimal(std::int32_t value) {
  Decimal decimal{};
  const auto end = std::to_chars(decimal.digits, decimal.digits + sizeof decimal.digits, value).ptr;
  decimal.count = static_cast<std::int32_t>(end - decimal.digits);
  return decimal;
}

bool IsBlank(char c) { return c == ' ' || c == '\t'; }
bool IsSign(char c) { return c == '-' || c == '+'; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

CBuffer::CBuffer(std::int32_t capacity) {
  if (!QV_CHECK(capacity >= 0, "CBuffer: capacity must not be negative") || capacity == 0) return;
  // Zeroed, so a block the system call left untouched reads as the empty text.
  text_ = AllocateBlock(capacity, true);
  if (text_) length_ = capacity_ = capacity;
}

CBuffer::CBuffer(const char* text) { Assign(text); }

CBuffer::CBuffer(const char* text, std::int32_t n) { AssignN(text, n); }

CBuffer::CBuffer(const CBuffer& other) {
  if (!other.text_ || other.length_ < 1) return;
  text_ = AllocateBlock(other.length_, false);
  if (!text_) return;
  std::memcpy(text_, other.text_, static_cast<std::size_t>(other.length_));
  length_ = capacity_ = other.length_;
}

CBuffer& CBuffer::operator=(const CBuffer& other) {
  if (this != &other) {
    CBuffer copy(other);
    TakeFrom(copy);
  }
  return *this;
}

CBuffer::CBuffer(CBuffer&& other) noexcept { TakeFrom(other); }

CBuffer& CBuffer::operator=(CBuffer&& other) noexcept {
  if (this != &other) TakeFrom(other);
  return *this;
}

CBuffer::~CBuffer() { std::free(text_); }

void CBuffer::TakeFrom(CBuffer& other) {
  std::free(text_);
  text_ = std::exchange(other.text_, nullptr);
  length_ = std::exchange(other.length_, 0);
  capacity_ = std::exchange(other.capacity_, 0);
}

void CBuffer::Clear() {
  std::free(text_);
  text_ = nullptr;
  length_ = capacity_ = 0;
}

bool CBuffer::Reserve(std::int32_t n) {
  if (!QV_CHECK(n >= 0, "CBuffer::Reserve: n must not be negative")) return false;
  // Deliberately drops the old text when it grows: every caller overwrites the block next.
  if (capacity_ < n) {
    char* block = AllocateBlock(n, true);
    if (!block) return false;
    std::free(text_);
    text_ = block;
    capacity_ = n;
  }
  length_ = n;
  return true;
}

void CBuffer::Assign(const char* text) {
  if (!QV_CHECK(text != nullptr, "CBuffer::Assign: text must not be null")) return;
  const std::int32_t chars = MeasureText(text);
  if (chars >= 0) AssignChars(text, chars);
}

void CBuffer::AssignN(const char* text, std::int32_t n) {
  if (!QV_CHECK(text != nullptr, "CBuffer::AssignN: text must not be null")) return;
  if (!QV_CHECK(n >= 1 && n <= kTextLimit, "CBuffer::AssignN: n must be between 1 and 1000")) {
    return;
  }
  const std::int32_t chars = MeasureText(text);
  if (chars >= 0) AssignChars(text, std::min(chars, n));
}

void CBuffer::AssignInt(std::int32_t value) {
  const Decimal decimal = FormatDecimal(value);
  AssignChars(decimal.digits, decimal.count);
}

void CBuffer::AssignChars(const char* source, std::int32_t count) {
  // A source inside this block is terminated within it, so Reserve keeps the block.
  if (!Reserve(count + 1)) return;
  std::memmove(text_, source, static_cast<std::size_t>(count));
  text_[count] = '\0';
}

void CBuffer::RecalculateSize() {
  if (!QV_CHECK(text_ != nullptr && capacity_ >= 1,
                "CBuffer::RecalculateSize: the buffer has no block")) {
    return;
  }
  const std::int32_t chars = MeasureOwnText();
  if (chars >= 0) length_ = std::min(chars + 1, capacity_);
}

std::int32_t CBuffer::MeasureOwnText() const {
  return CountChars(text_, std::min(kTextLimit, capacity_));
}

bool CBuffer::Validate() const {
  if (!text_) return true;
  const std::int32_t chars = MeasureOwnText();
  if (!QV_CHECK(chars >= 0, kNoZeroInBlock)) return false;
  if (!QV_CHECK(chars + 1 <= length_, kTextLongerThanLength)) return false;
  return QV_CHECK(length_ <= capacity_, kLengthAboveCapacity);
}

CBuffer& CBuffer::Append(const char* text) {
  if (!Validate() || !text) return *this;
  const std::int32_t chars = MeasureText(text);
  if (chars >= 0) AppendChars(text, chars);
  return *this;
}

CBuffer& CBuffer::Append(const CBuffer& other) {
  if (!Validate() || !other.text_) return *this;
  const std::int32_t chars = other.MeasureOwnText();
  if (chars >= 0) AppendChars(other.text_, chars);
  return *this;
}

CBuffer& CBuffer::Append(std::int32_t value) {
  if (!QV_CHECK(!text_ || length_ >= 1, kLengthBelowOne) || !Validate()) return *this;
  const Decimal decimal = FormatDecimal(value);
  AppendChars(decimal.digits, decimal.count);
  return *this;
}

// The length, not the measured text, says where the old characters end: a shorter text that a
// system call wrote without RecalculateSize keeps its zero in front of what is appended.
void CBuffer::AppendChars(const char* source, std::int32_t count) {
  if (!text_) {
    AssignChars(source, count);
    return;
  }
  const std::int32_t oldChars = length_ - 1;
  const std::int32_t newLength = length_ + count;
  if (newLength > kTextLimit) return;
  char* target = text_;
  if (newLength > capacity_) {
    target = AllocateBlock(newLength, false);
    if (!target) return;
    std::memcpy(target, text_, static_cast<std::size_t>(oldChars));
  }
  // The source may lie in the old block, which is freed only once it has been copied.
  std::memmove(target + oldChars, source, static_cast<std::size_t>(count));
  target[newLength - 1] = '\0';
  if (target != text_) {
    std::free(text_);
    text_ = target;
    capacity_ = newLength;
  }
  length_ = newLength;
}

CBuffer CBuffer::FromChars(const char* source, std::int32_t count) {
  CBuffer result;
  result.AssignChars(source, count);
  return result;
}

CBuffer CBuffer::Left(std::int32_t n) const {
  if (!Validate() || !QV_CHECK(n >= 1, "CBuffer::Left: n must be at least 1")) return CBuffer();
  if (length_ <= n) return *this;
  return FromChars(text_, std::min(n, MeasureOwnText()));
}

CBuffer CBuffer::Mid(std::int32_t p, std::int32_t n) const {
  if (!Validate()) return CBuffer();
  if (!QV_CHECK(p >= 1 && p < length_, "CBuffer::Mid: p must lie between 1 and length - 1") ||
      !QV_CHECK(n >= 1, "CBuffer::Mid: n must be at least 1")) {
    return CBuffer();
  }
  const std::int32_t start = p - 1;
  const std::int32_t available = std::max(0, MeasureOwnText() - start);
  return FromChars(text_ + start, std::min(n, available));
}

CBuffer CBuffer::Right(std::int32_t n) const {
  if (!Validate() || !QV_CHECK(n >= 1, "CBuffer::Right: n must be at least 1")) return CBuffer();
  if (length_ <= n) return *this;
  const std::int32_t chars = MeasureOwnText();
  const std::int32_t count = std::min(n, chars);
  return FromChars(text_ + chars - count, count);
}

bool CBuffer::Equals(const char* text) const {
  if (!text) return false;
  const std::int32_t chars = MeasureText(text);
  return chars >= 0 && length_ == chars + 1 &&
         std::memcmp(text_, text, static_cast<std::size_t>(length_)) == 0;
}

bool CBuffer::Equals(const CBuffer& other) const {
  if (length_ != other.length_) return false;
  // Deliberately compares bytes only from length 2, and then all of them, zero and beyond.
  return length_ < 2 ||
         std::memcmp(text_, other.text_, static_cast<std::size_t>(length_)) == 0;
}

char* CBuffer::At(std::int32_t i) {
  const bool inside = text_ != nullptr && i >= 0 && i < capacity_;
  if (!QV_CHECK(inside, "CBuffer::At: i is outside the block")) return nullptr;
  return text_ + i;
}

const char* CBuffer::At(std::int32_t i) const { return const_cast<CBuffer*>(this)->At(i); }

CBuffer operator+(const CBuffer& a, const CBuffer& b) {
  if (!a.HoldsCharacter()) return b.HoldsCharacter() ? b : CBuffer();
  if (!b.HoldsCharacter()) return a;
  const std::int32_t aChars = a.length_ - 1;
  const std::int32_t bChars = b.length_ - 1;
  if (aChars + bChars >= CBuffer::kTextLimit) return a;
  CBuffer joined;
  if (!joined.Reserve(aChars + bChars + 1)) return CBuffer();
  std::memcpy(joined.text_, a.text_, static_cast<std::size_t>(aChars));
  std::memcpy(joined.text_ + aChars, b.text_, static_cast<std::size_t>(bChars));
  joined.text_[aChars + bChars] = '\0';
  return joined;
}

CBuffer operator+(const CBuffer& a, const char* text) { return a + CBuffer(text); }

CBuffer operator+(const char* text, const CBuffer& b) { return CBuffer(text) + b; }

CBuffer operator+(const CBuffer& a, std::int32_t value) {
  CBuffer result(a);
  result += value;
  return result;
}

std::int32_t ParseInt(const char* text) {
  if (!text) return 0;
  const std::int32_t limit = CBuffer::kTextLimit;
  std::int32_t i = 0;
  while (i < limit && IsBlank(text[i])) ++i;
  bool negative = false;
  for (; i < limit && IsSign(text[i]); ++i) {
    if (text[i] == '-') negative = !negative;
  }
  // Ten digits can exceed the range; the value then wraps, as there is no overflow check.
  std::uint32_t value = 0;
  for (int digits = 0; digits < 10 && i < limit && IsDigit(text[i]); ++digits, ++i) {
    value = value * 10 + static_cast<std::uint32_t>(text[i] - '0');
  }
  return static_cast<std::int32_t>(negative ? 0u - value : value);
}

}  // namespace qv
