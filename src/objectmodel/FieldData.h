#pragma once

#include <cstdint>

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
///                           (-23, -22, -21, -24)
///   enumeration             the allowed text in the descriptor, or an owned copy of another text
struct FieldData
{
    /// "Not set": the record exists but holds nothing.
    static constexpr std::uintptr_t kNotSet = 0xbaadf00ddeadbeefULL;

    FieldDescriptor* descriptor;
    std::uintptr_t value;
    FieldData* next;

    bool IsSet() const { return value != kNotSet; }

    // --- typed views of the value word; the caller knows the type -------------------------------
    int Int() const { return static_cast<int>(static_cast<std::intptr_t>(value)); }
    void SetInt(int number) { value = static_cast<std::uintptr_t>(static_cast<std::intptr_t>(number)); }
    double Double() const;
    void SetDouble(double number);
    int* Ints() const { return reinterpret_cast<int*>(value); }
    double* Doubles() const { return reinterpret_cast<double*>(value); }
    Array<int>* IntArray() const { return reinterpret_cast<Array<int>*>(value); }
    Array<double>* DoubleArray() const { return reinterpret_cast<Array<double>*>(value); }
    Id* SingleId() const { return reinterpret_cast<Id*>(value); }
    Array<Id>* Ids() const { return reinterpret_cast<Array<Id>*>(value); }
    Object* Element() const { return reinterpret_cast<Object*>(value); }
    ElementList* Elements() const { return reinterpret_cast<ElementList*>(value); }
    ExternalRep* External() const { return reinterpret_cast<ExternalRep*>(value); }
    Array<ExternalRep*>* Externals() const
    {
        return reinterpret_cast<Array<ExternalRep*>*>(value);
    }
    template <class T>
    void SetPointer(T* pointer)
    {
        value = reinterpret_cast<std::uintptr_t>(pointer);
    }

    /// Which stored form a field has; content fields count as the type that their class names.
    enum class Form
    {
        None, Int, Ints, IntArray, Double, Doubles, DoubleArray, Text, SingleId, Ids, Element,
        Elements, External, Externals, Enum
    };
    static Form FormOf(const FieldDescriptor& descriptor);

    enum DeleteOptions : unsigned
    {
        kDeleteAll = 0,
        kLeaveChildren = 1,        // child objects stay alive
        kMarkChildren = 2,         // children get the flag "deleted with the parent" first
    };

    /// Gives a not-set record its empty value or its default. `keepEmpty` leaves URIs unset. False
    /// for a type that can't be stored.
    bool InitValue(ClassData& owner, bool keepEmpty);
    /// Frees the value by type and makes the record not set. Child objects are deleted unless the
    /// options say otherwise.
    void DeleteValue(ClassData& owner, unsigned options);
    /// Empties containers, clears references, deletes contained objects: the record is not set.
    void ResetValue(ClassData& owner);
    /// With `checkDefault`: a default counts as set, empty texts, lists and references don't.
    bool HasValue(const ClassData& owner, bool checkDefault) const;
};

}  // namespace zorvex_api
