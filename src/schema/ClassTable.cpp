#include "schema/ClassTable.h"

#include "objectmodel/ClassDescriptorImpl.h"
#include "zorvex_api/ClassDescriptor.h"
#include "zorvex_api/LinkNode.h"

namespace zorvex_api::internal
{

namespace
{

// A String over a literal: no copy is made.
String Borrow(const char16_t* literal)
{
    return String(literal, -1);
}

void RegisterField(ClassDescriptor& descriptor, const FieldRow& row)
{
    const String name = Borrow(row.name);
    descriptor.RegisterField(name, row.enumType != nullptr ? *row.enumType : row.type);
    if (row.className != nullptr)
    {
        descriptor.SetFieldClass(name, Borrow(row.className), 0);
    }
    if (row.enumValues != nullptr)
    {
        descriptor.SetFieldAllowedValues(name, const_cast<const char**>(row.enumValues()));
    }
    if (row.defaultText != nullptr)
    {
        descriptor.SetFieldDefault(name, Borrow(row.defaultText));
    }
    if ((row.flags & FieldRow::kRequired) != 0)
    {
        descriptor.SetFieldRequired(name, 1);
    }
    if (row.length != FieldRow::kNoLength)
    {
        descriptor.SetFieldLength(name, row.length);
    }
    if ((row.flags & FieldRow::kDeprecated) != 0)
    {
        descriptor.SetFieldDeprecated(name, 1);
    }
}

void SetProperties(ClassDescriptor& descriptor, const ClassRow& row)
{
    if (row.legacyNumber != nullptr)
    {
        *row.legacyNumber = descriptor.GetClass();
        descriptor.SetProperty("legacy_class_value", static_cast<void*>(row.legacyNumber));
    }
    if (row.optionalAttributes == nullptr)
    {
        return;
    }
    for (const char16_t* const* name = row.optionalAttributes; *name != nullptr; ++name)
    {
        descriptor.SetProperty("attributeUseOptional", Borrow(*name));
    }
}

}  // namespace

int InitialiseFromRow(void* record, const ClassRow& row)
{
    if (record == nullptr)
    {
        return 0;
    }
    auto& init = *static_cast<ClassInitRecord*>(record);
    ClassDescriptor& descriptor = *init.descriptor;
    *row.classNumber = descriptor.GetClass();
    init.staticClass = row.classNumber;

    ClassDescriptorImpl& impl = *descriptor.GetImplementation();
    impl.SetBorrowsTexts(true);
    descriptor.SetVersion(Borrow(row.module->version));
    descriptor.SetName(Borrow(row.name));
    descriptor.SetSchemaName(Borrow(row.schemaType));
    descriptor.SetNamespace(Borrow(row.module->namespaceUri), Borrow(row.module->namespacePrefix));
    descriptor.SetMakeFunction(row.make);
    descriptor.SetBaseClass(Borrow(row.base));
    descriptor.SetEquivalenceClass(Borrow(row.equivalent));
    descriptor.SetIsAbstract(row.abstract ? 1 : 0);
    for (int i = 0; i < row.fieldCount; ++i)
    {
        RegisterField(descriptor, row.fields[i]);
    }
    SetProperties(descriptor, row);
    impl.SetBorrowsTexts(false);
    return 1;
}

}  // namespace zorvex_api::internal
