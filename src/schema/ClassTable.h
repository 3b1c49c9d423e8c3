#pragma once

#include "objectmodel/ObjectBlock.h"
#include "zorvex_api/Object.h"

/// The rows that the generated sources consist of, and the engine that registers a class from its
/// row. Texts are literals.
namespace zorvex_api::internal
{

/// One field. Null stands for what isn't set.
struct FieldRow
{
    enum Flags : unsigned char
    {
        kNone = 0,
        kRequired = 1,
        kDeprecated = 2
    };
    static constexpr signed char kNoLength = -1;

    const char16_t* name;
    const char16_t* className;
    const char16_t* defaultText;
    const int* enumType;  // the type code's place, for an enumeration
    const char* const* (*enumValues)();
    unsigned char type;  // zorvexFieldType, when there is no enumType
    signed char length;
    unsigned char flags;
};

/// A schema module: what all of its classes have in common.
struct ModuleRow
{
    const char16_t* version;
    const char16_t* namespaceUri;
    const char16_t* namespacePrefix;
};

struct ClassRow
{
    const ModuleRow* module;
    const char16_t* name;
    const char16_t* schemaType;
    const char16_t* base;
    const char16_t* equivalent;
    short* classNumber;
    short* legacyNumber;  // null for all but one class
    Object* (*make)();
    const FieldRow* fields;
    int fieldCount;
    const char16_t* const* optionalAttributes;  // null-terminated list, or null
    bool abstract;
};

template <class T>
Object* MakeObjectOf()
{
    if constexpr (sizeof(T) == sizeof(Object))
    {
        return ObjectBlock::Make<T>();
    }
    else
    {
        return new T();
    }
}

/// Fills the descriptor of a class node from its row: `record` is what the node's initialiser was
/// given. 0 for null, else 1.
int InitialiseFromRow(void* record, const ClassRow& row);

}  // namespace zorvex_api::internal
