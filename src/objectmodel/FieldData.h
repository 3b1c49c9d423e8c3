#pragma once

#include <bit>
#include <cstdint>

#include "runtime/StoredText.h"
#include "runtime/Text.h"
#include "zorvex_api/Array.h"
#include "zorvex_api/Object.h"

namespace zorvex_api
{

class ClassData;
class ElementList;
class FieldDescriptor;
class Id;
struct ExternalRep;

/// The value of one field of one object: three words, made only for fields that were touched.
///
/// The value word by field type:
///   logical, int            length 1: the int itself; n: int* to n values; variable: Array<int>*
///   double                  length 1: the bits of the double (DoubleWord); n: double*; variable:
///                           Array<double>*
///   vector, matrix          double* to 3 and 16 values, always that many
///   string                  stored text (runtime/StoredText.h)
///   single reference        Id*;  multiple reference: Array<Id>*
///   single element          Object*, owned;  multiple element: ElementList*, children owned
///   URI, external reference ExternalRep*;  multiple URI: Array<ExternalRep*>*
///   content                 as string, double, int or logical, by the field's class value
///                           (-23, -22, -21, -24); -25 as string
///   enumeration             the allowed text in the descriptor (const String*), or an owned copy
///   of
///                           another text, marked by the lowest bit; null for none
struct FieldData
{
    /// "Not set": the record exists but holds nothing.
    static constexpr std::uintptr_t kNotSet = 0xbaadf00ddeadbeefULL;

    /// A double of length 1 stands in the word, combined with a key so that "not set" could only be
    /// one NaN of an odd payload, which is stored as the plain NaN.
    static constexpr std::uint64_t kReservedNan = 0x7ff4dead0badf00dULL;
    static constexpr std::uint64_t kQuietNan = 0x7ff8000000000000ULL;
    static constexpr std::uint64_t kDoubleKey = kNotSet ^ kReservedNan;

    FieldDescriptor* descriptor;
    std::uintptr_t value;
    FieldData* next;

    bool IsSet() const { return value != kNotSet; }

    // --- typed views of the value word; the caller knows the type -------------------------------
    int Int() const { return static_cast<int>(static_cast<std::intptr_t>(value)); }
    void SetInt(int number)
    {
        value = static_cast<std::uintptr_t>(static_cast<std::intptr_t>(number));
    }
    double Double() const { return std::bit_cast<double>(value ^ kDoubleKey); }
    void SetDouble(double number)
    {
        const std::uint64_t bits = std::bit_cast<std::uint64_t>(number);
        value = (bits == kReservedNan ? kQuietNan : bits) ^ kDoubleKey;
    }
    int* Ints() const { return reinterpret_cast<int*>(value); }
    double* Doubles() const { return reinterpret_cast<double*>(value); }
    Array<int>* IntArray() const { return reinterpret_cast<Array<int>*>(value); }
    Array<double>* DoubleArray() const { return reinterpret_cast<Array<double>*>(value); }
    Id* SingleId() const { return reinterpret_cast<Id*>(value); }
    Array<Id>* Ids() const { return reinterpret_cast<Array<Id>*>(value); }
    Object* Element() const { return reinterpret_cast<Object*>(value); }
    ElementList* Elements() const { return reinterpret_cast<ElementList*>(value); }
    ExternalRep* External() const { return reinterpret_cast<ExternalRep*>(value); }
    Array<ExternalRep*>* Externals() const { return reinterpret_cast<Array<ExternalRep*>*>(value); }
    stored::Word Text() const { return reinterpret_cast<stored::Word>(value); }
    /// The text of an enumeration; empty for none.
    TextView EnumText() const;
    /// An allowed text of the descriptor, or null. The value before isn't freed; see FreeEnum.
    void SetEnum(const String* allowed) { value = reinterpret_cast<std::uintptr_t>(allowed); }
    /// A copy of a text that the descriptor doesn't have.
    void SetEnumCopy(TextView text);
    /// Frees an owned text; the value is null then.
    void FreeEnum();
    template <class T>
    void SetPointer(T* pointer)
    {
        value = reinterpret_cast<std::uintptr_t>(pointer);
    }

    /// Which stored form a field has; content fields count as the type that their class names.
    enum class Form
    {
        None,
        Int,
        Ints,
        IntArray,
        Double,
        Doubles,
        DoubleArray,
        Text,
        SingleId,
        Ids,
        Element,
        Elements,
        External,
        Externals,
        Enum
    };
    static Form FormOf(const FieldDescriptor& descriptor);
    /// Whether the values are integers, logicals or doubles, one or several.
    static bool HoldsNumbers(const FieldDescriptor& descriptor);
    /// How many numbers a fixed field holds: 16 for a matrix, 3 for a vector, else its length.
    static int NumberCount(const FieldDescriptor& descriptor);

    enum DeleteOptions : unsigned
    {
        kDeleteAll = 0,
        kLeaveChildren = 1,  // child objects stay alive
        kMarkChildren = 2,   // children get the flag "deleted with the parent" first
    };

    /// Gives a not-set record its empty value or its default. `keepEmpty` leaves URIs unset. False
    /// for a type that can't be stored.
    bool InitValue(ClassData& owner, bool keepEmpty);
    /// The same without the default: for a caller that fills the whole value at once. Numbers are
    /// zeros, lists empty.
    bool InitEmpty(ClassData& owner);
    /// Frees the value by type and makes the record not set. Child objects are deleted unless the
    /// options say otherwise.
    void DeleteValue(ClassData& owner, unsigned options);
    /// Frees the value, contained objects included: the record stays and is not set.
    void ResetValue(ClassData& owner);
    /// With `checkDefault`: a default counts as set, empty texts, lists and references don't.
    bool HasValue(const ClassData& owner, bool checkDefault) const;
};

}  // namespace zorvex_api
