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

void RegisterField(ClassDescriptorImpl& impl, const FieldRow& row)
{
    FieldDescriptor* const field =
        impl.NewField(Borrow(row.name), row.enumType != nullptr ? *row.enumType : row.type);
    if (field == nullptr)
    {
        return;  // a base class has it already
    }
    if (row.className != nullptr)
    {
        field->SetClass(Borrow(row.className), false, true);
    }
    if (row.enumValues != nullptr)
    {
        field->AddAllowedValues(row.enumValues(), true);
    }
    if (row.defaultText != nullptr)
    {
        field->SetDefault(Borrow(row.defaultText), true);
    }
    field->SetRequired((row.flags & FieldRow::kRequired) != 0);
    if (row.length != FieldRow::kNoLength)
    {
        field->SetLength(row.length);
    }
    field->SetDeprecated((row.flags & FieldRow::kDeprecated) != 0);
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
        RegisterField(impl, row.fields[i]);
    }
    SetProperties(descriptor, row);
    impl.SetBorrowsTexts(false);
    return 1;
}

}  // namespace zorvex_api::internal
