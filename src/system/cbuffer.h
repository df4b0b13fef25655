// CBuffer: the owned, zero-terminated text and path buffer, limited to 1000 characters.
#pragma once

#include <cstdint>

namespace qv {

// Texts and paths are built here, and the same block is handed to system calls as an output
// buffer. The length counts the terminating zero. Growth is exact: a block is never larger than
// the text it was grown for. Operations that fail a check report it and leave the buffer as it
// was; operations returning a new buffer then return the empty one.
class CBuffer {
 public:
  // A text of this many characters or more is never taken; operations offered one do nothing.
  static constexpr std::int32_t kTextLimit = 1000;

  CBuffer() = default;
  // An output block for a system call: length = capacity = n, all bytes zero. Call
  // RecalculateSize once the call has written its text.
  explicit CBuffer(std::int32_t capacity);
  explicit CBuffer(const char* text);
  CBuffer(const char* text, std::int32_t n);  // the first n characters of text
  CBuffer(const CBuffer& other);
  CBuffer& operator=(const CBuffer& other);
  CBuffer(CBuffer&& other) noexcept;
  CBuffer& operator=(CBuffer&& other) noexcept;
  ~CBuffer();

  void Clear();
  // Makes room for n bytes and sets the length to n; false when n is negative or memory ran out.
  bool Reserve(std::int32_t n);
  void Assign(const char* text);
  void AssignN(const char* text, std::int32_t n);
  void AssignInt(std::int32_t value);
  // Measures what a system call wrote into the block and takes that as the length.
  void RecalculateSize();

  CBuffer& Append(const char* text);
  CBuffer& Append(const CBuffer& other);
  CBuffer& Append(std::int32_t value);
  CBuffer& operator+=(const char* text) { return Append(text); }
  CBuffer& operator+=(const CBuffer& other) { return Append(other); }
  CBuffer& operator+=(std::int32_t value) { return Append(value); }

  CBuffer Left(std::int32_t n) const;
  CBuffer Mid(std::int32_t p, std::int32_t n) const;  // p counts from 1
  CBuffer Right(std::int32_t n) const;

  bool Equals(const char* text) const;
  bool Equals(const CBuffer& other) const;

  // Catches a block that a system call overran or lengthened behind the buffer's back.
  bool Validate() const;

  char* Text() { return text_; }
  const char* Text() const { return text_; }
  std::int32_t Length() const { return length_; }  // including the terminating zero
  std::int32_t Capacity() const { return capacity_; }
  char* At(std::int32_t i);
  const char* At(std::int32_t i) const;

  friend CBuffer operator+(const CBuffer& a, const CBuffer& b);

 private:
  void TakeFrom(CBuffer& other);
  std::int32_t MeasureOwnText() const;
  bool HoldsCharacter() const { return text_ != nullptr && length_ >= 2; }
  void AssignChars(const char* source, std::int32_t count);
  void AppendChars(const char* source, std::int32_t count);
  static CBuffer FromChars(const char* source, std::int32_t count);

  char* text_ = nullptr;
  std::int32_t length_ = 0;
  std::int32_t capacity_ = 0;
};

CBuffer operator+(const CBuffer& a, const char* text);
CBuffer operator+(const char* text, const CBuffer& b);
CBuffer operator+(const CBuffer& a, std::int32_t value);

// Leading blanks, then any run of '+' and '-' (each '-' flips the sign), then up to ten digits.
// A null or empty text gives 0.
std::int32_t ParseInt(const char* text);

}  // namespace qv
