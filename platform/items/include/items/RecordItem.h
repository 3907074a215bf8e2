#pragma once

#include <array>
#include <cstdint>
#include <tuple>
#include <type_traits>

#include "items/Item.h"
#include "items/Text.h"
#include "system/BigEndian.h"

// Encodings of the fields of record items. All numbers are big-endian.
//
//   bool, 8-bit number     1 byte
//   16-bit number          2 bytes, two's complement if signed
//   32-bit number or enum  4 bytes, two's complement if signed
//   Text                   16-bit length, then the bytes
//   array of fields        its elements
//   record                 its fields
namespace field {

// A group of fields that lists its members like a record item, but is not an item.
template <typename T>
concept Group = requires {
  T::Fields();
}
&&!std::is_base_of_v<Item, T>;

template <typename T>
concept Number = std::is_arithmetic_v<T> || std::is_enum_v<T>;

// Whether the size of a field does not depend on its value.
template <typename T>
struct IsFixed : std::bool_constant<Number<T>> {};
template <typename T, std::size_t N>
struct IsFixed<std::array<T, N>> : IsFixed<T> {};
template <typename Record, typename T>
constexpr bool IsFixedMember(T Record::* /*member*/) {
  return IsFixed<T>::value;
}
template <typename Record>
constexpr bool HasFixedFields() {
  return std::apply([](auto... member) { return (IsFixedMember(member) && ...); }, Record::Fields());
}
template <Group T>
struct IsFixed<T> : std::bool_constant<HasFixedFields<T>()> {};

template <Number T>
unsigned int Size(const T& /*value*/) {
  static_assert(sizeof(T) == 1 || sizeof(T) == 2 || sizeof(T) == 4);
  return sizeof(T);
}

template <Number T>
unsigned char* Encode(const T& value, unsigned char* p) {
  if constexpr (sizeof(T) == 1) {
    *p = static_cast<unsigned char>(value);
  } else if constexpr (sizeof(T) == 2) {
    PutU16(p, static_cast<std::uint16_t>(value));
  } else {
    PutU32(p, static_cast<std::uint32_t>(value));
  }
  return p + sizeof(T);
}

template <Number T>
const unsigned char* Decode(T& value, const unsigned char* p) {
  if constexpr (std::is_same_v<T, bool>) {
    value = *p != 0;
  } else if constexpr (sizeof(T) == 1) {
    value = static_cast<T>(*p);
  } else if constexpr (sizeof(T) == 2) {
    value = static_cast<T>(GetU16(p));
  } else {
    value = static_cast<T>(GetU32(p));
  }
  return p + sizeof(T);
}

unsigned int Size(const Text& text);
unsigned char* Encode(const Text& text, unsigned char* p);
const unsigned char* Decode(Text& text, const unsigned char* p);

template <typename T, std::size_t N>
unsigned int Size(const std::array<T, N>& elements);
template <typename T, std::size_t N>
unsigned char* Encode(const std::array<T, N>& elements, unsigned char* p);
template <typename T, std::size_t N>
const unsigned char* Decode(std::array<T, N>& elements, const unsigned char* p);

// Handle the members that T::Fields() lists, in order.
template <typename T>
unsigned int SizeOfFields(const T& record) {
  return std::apply([&](auto... member) { return (0U + ... + Size(record.*member)); }, T::Fields());
}
template <typename T>
unsigned char* EncodeFields(const T& record, unsigned char* p) {
  std::apply([&](auto... member) { ((p = Encode(record.*member, p)), ...); }, T::Fields());
  return p;
}
template <typename T>
const unsigned char* DecodeFields(T& record, const unsigned char* p) {
  std::apply([&](auto... member) { ((p = Decode(record.*member, p)), ...); }, T::Fields());
  return p;
}

template <Group T>
unsigned int Size(const T& group) {
  return SizeOfFields(group);
}
template <Group T>
unsigned char* Encode(const T& group, unsigned char* p) {
  return EncodeFields(group, p);
}
template <Group T>
const unsigned char* Decode(T& group, const unsigned char* p) {
  return DecodeFields(group, p);
}

template <typename T, std::size_t N>
unsigned int Size(const std::array<T, N>& elements) {
  unsigned int size = 0;
  for (const T& element : elements) size += Size(element);
  return size;
}
template <typename T, std::size_t N>
unsigned char* Encode(const std::array<T, N>& elements, unsigned char* p) {
  for (const T& element : elements) p = Encode(element, p);
  return p;
}
template <typename T, std::size_t N>
const unsigned char* Decode(std::array<T, N>& elements, const unsigned char* p) {
  for (T& element : elements) p = Decode(element, p);
  return p;
}

}  // namespace field

// An item that is a list of fields. Derived has public members with default values and lists them in the
// order of the encoding:
//
//   static constexpr auto Fields() { return std::make_tuple(&Derived::a, &Derived::b); }
template <typename Derived>
class RecordItem : public Item {
 public:
  unsigned int Size() const override { return field::SizeOfFields(Self()); }
  unsigned char* Encode(unsigned char* p) const override { return field::EncodeFields(Self(), p); }
  unsigned char* Decode(unsigned char* p) override {
    return p + (field::DecodeFields(static_cast<Derived&>(*this), p) - p);
  }
  std::unique_ptr<Item> New() const override { return std::make_unique<Derived>(); }

 protected:
  bool HasFixedSize() const override { return field::HasFixedFields<Derived>(); }

 private:
  const Derived& Self() const { return static_cast<const Derived&>(*this); }
};
