#pragma once

// Binary records declared once as a table of (name, offset, member).
//
// A record type R gets a specialisation of Layout<R> with its size in the file and a tuple of
// Field entries. Decoding, encoding and the layout checks are derived from that one table, so
// the offsets read like the format's documentation and can never drift from the code.
// All values are little-endian. Fixed text fields are Latin-1, blank-padded.

#include <QString>
#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <tuple>
#include <type_traits>
#include <vector>

static_assert(std::endian::native == std::endian::little || std::endian::native == std::endian::big);

// A fixed-width text field of N single-byte characters. In memory it is the text with its
// trailing blanks cut; in the file it is blank-padded to N.
template <int N>
struct FixedText {
  static constexpr int kWidth = N;
  QString text;

  FixedText() = default;
  FixedText(const QString& t) : text(t) {}  // NOLINT: plain assignment from text is the point
  FixedText(const char* t) : text(QString::fromLatin1(t)) {}  // NOLINT
  operator const QString&() const { return text; }           // NOLINT
  QString Trimmed() const { return text.trimmed(); }
  bool operator==(const FixedText& o) const { return text == o.text; }
};

template <class T>
struct Layout;  // specialised per record type

template <class R, class T>
struct Field {
  const char* name;
  int offset;
  T R::*member;
};

// Spelled out for compilers without deduction for aggregates (clang before 17).
template <class R, class T>
Field(const char*, int, T R::*) -> Field<R, T>;

template <class T, class = void>
struct IsRecord : std::false_type {};
template <class T>
struct IsRecord<T, std::void_t<decltype(Layout<T>::kSize)>> : std::true_type {};

template <class T>
struct IsStdArray : std::false_type {};
template <class E, std::size_t N>
struct IsStdArray<std::array<E, N>> : std::true_type {};

template <class T>
struct IsFixedText : std::false_type {};
template <int N>
struct IsFixedText<FixedText<N>> : std::true_type {};

// Bytes a value of type T takes in the file.
template <class T>
constexpr int FileSize() {
  if constexpr (std::is_arithmetic_v<T>) {
    return static_cast<int>(sizeof(T));
  } else if constexpr (IsFixedText<T>::value) {
    return T::kWidth;
  } else if constexpr (IsStdArray<T>::value) {
    return static_cast<int>(std::tuple_size_v<T>) * FileSize<typename T::value_type>();
  } else {
    static_assert(IsRecord<T>::value, "field type has no file layout");
    return Layout<T>::kSize;
  }
}

// True when the fields of R lie in ascending order, do not overlap and end inside the record.
template <class R>
constexpr bool LayoutIsSound() {
  int end = 0;
  bool ok = true;
  std::apply(
      [&](const auto&... f) {
        (([&] {
           using T = std::remove_reference_t<decltype(std::declval<R&>().*(f.member))>;
           if (f.offset < end) ok = false;
           end = f.offset + FileSize<T>();
         }()),
         ...);
      },
      Layout<R>::kFields);
  return ok && end <= Layout<R>::kSize;
}

namespace binary_detail {

template <class T>
T LoadLittle(const uint8_t* p) {
  using U = std::conditional_t<sizeof(T) == 1, uint8_t,
            std::conditional_t<sizeof(T) == 2, uint16_t,
            std::conditional_t<sizeof(T) == 4, uint32_t, uint64_t>>>;
  U u = 0;
  for (std::size_t i = 0; i < sizeof(T); ++i) u |= static_cast<U>(static_cast<U>(p[i]) << (8 * i));
  return std::bit_cast<T>(u);
}

template <class T>
void StoreLittle(uint8_t* p, T value) {
  using U = std::conditional_t<sizeof(T) == 1, uint8_t,
            std::conditional_t<sizeof(T) == 2, uint16_t,
            std::conditional_t<sizeof(T) == 4, uint32_t, uint64_t>>>;
  U u = std::bit_cast<U>(value);
  for (std::size_t i = 0; i < sizeof(T); ++i) p[i] = static_cast<uint8_t>(u >> (8 * i));
}

QString DecodeText(const uint8_t* p, int width);
void EncodeText(uint8_t* p, int width, const QString& text);

template <class T>
void Decode(const uint8_t* p, T& out);
template <bool kKeep, class T>
void Encode(uint8_t* p, const T& value);

template <class R>
void DecodeRecord(const uint8_t* p, R& out) {
  std::apply([&](const auto&... f) { (Decode(p + f.offset, out.*(f.member)), ...); }, Layout<R>::kFields);
}

template <bool kKeep, class R>
void EncodeRecord(uint8_t* p, const R& value) {
  std::apply([&](const auto&... f) { (Encode<kKeep>(p + f.offset, value.*(f.member)), ...); },
             Layout<R>::kFields);
}

template <class T>
void Decode(const uint8_t* p, T& out) {
  if constexpr (std::is_arithmetic_v<T>) {
    out = LoadLittle<T>(p);
  } else if constexpr (IsFixedText<T>::value) {
    out.text = DecodeText(p, T::kWidth);
  } else if constexpr (IsStdArray<T>::value) {
    constexpr int step = FileSize<typename T::value_type>();
    for (std::size_t i = 0; i < out.size(); ++i) Decode(p + i * step, out[i]);
  } else {
    DecodeRecord(p, out);
  }
}

// With kKeep a field is written only where its value differs from what the bytes already hold,
// so a field that was read and not changed keeps its exact bytes (text padding, NaN payloads, -0).
template <bool kKeep, class T>
void Encode(uint8_t* p, const T& value) {
  if constexpr (std::is_arithmetic_v<T>) {
    if (!kKeep || !(LoadLittle<T>(p) == value)) StoreLittle(p, value);
  } else if constexpr (IsFixedText<T>::value) {
    if (!kKeep || DecodeText(p, T::kWidth) != value.text) EncodeText(p, T::kWidth, value.text);
  } else if constexpr (IsStdArray<T>::value) {
    constexpr int step = FileSize<typename T::value_type>();
    for (std::size_t i = 0; i < value.size(); ++i) Encode<kKeep>(p + i * step, value[i]);
  } else {
    EncodeRecord<kKeep>(p, value);
  }
}

}  // namespace binary_detail

// Decodes a record from bytes; missing bytes at the end read as zeros.
template <class R>
R DecodeRecordBytes(const uint8_t* data, std::size_t size) {
  std::array<uint8_t, Layout<R>::kSize> buf{};
  std::memcpy(buf.data(), data, std::min<std::size_t>(size, buf.size()));
  R r{};
  binary_detail::DecodeRecord(buf.data(), r);
  return r;
}

// Writes every field of a record over `bytes`; bytes the table does not name are left as they are.
template <class R>
void EncodeRecordBytes(const R& r, uint8_t* bytes) {
  binary_detail::EncodeRecord<false>(bytes, r);
}

// Records that keep their whole byte buffer in a member `Raw` (the size of the record): bytes
// the program does not interpret survive a read and a write untouched.
template <class R>
void ReadStoredRecord(R& r, const uint8_t* data, std::size_t size) {
  r = R{};
  std::memcpy(r.Raw.data(), data, std::min<std::size_t>(size, r.Raw.size()));
  binary_detail::DecodeRecord(r.Raw.data(), r);
}

// Brings `Raw` up to date with the fields and returns it.
template <class R>
const auto& StoredRecordBytes(R& r) {
  static_assert(sizeof(r.Raw) == Layout<R>::kSize);
  binary_detail::EncodeRecord<true>(r.Raw.data(), r);
  return r.Raw;
}
