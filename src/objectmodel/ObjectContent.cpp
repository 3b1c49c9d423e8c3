#include "runtime/Text.h"
#include "zorvex_api/Object.h"

/// The character data of an element: the attribute operations on the field "Content".

namespace zorvex_api
{

namespace
{

constexpr unsigned int kContentOnly = 8;

String ContentName()
{
    return BorrowConstant(u"Content");
}

}  // namespace

Result Object::GetContent(int& value) const
{
    return GetAttributeValue(ContentName(), value);
}

Result Object::GetContent(double& value) const
{
    return GetAttributeValue(ContentName(), value);
}

Result Object::GetContent(String& value) const
{
    return GetAttributeValue(ContentName(), value);
}

Result Object::GetContent(Array<int>& values) const
{
    return GetAttributeValue(ContentName(), values);
}

Result Object::GetContent(Array<double>& values) const
{
    return GetAttributeValue(ContentName(), values);
}

Result Object::GetContent(Transf& value) const
{
    return GetAttributeValue(ContentName(), value);
}

Result Object::GetContent(Vector& value) const
{
    return GetAttributeValue(ContentName(), value);
}

Result Object::SetContent(int value)
{
    return SetAttributeValue(ContentName(), value);
}

Result Object::SetContent(double value)
{
    return SetAttributeValue(ContentName(), value);
}

Result Object::SetContent(const String& value)
{
    return SetAttributeValue(ContentName(), value);
}

Result Object::SetContent(const Array<int>& values)
{
    return SetAttributeValue(ContentName(), values);
}

Result Object::SetContent(const Array<double>& values)
{
    return SetAttributeValue(ContentName(), values);
}

Result Object::SetContent(const Transf& value)
{
    return SetAttributeValue(ContentName(), value);
}

Result Object::SetContent(const Vector& value)
{
    return SetAttributeValue(ContentName(), value);
}

int Object::HasContent() const
{
    return HasField(ContentName(), kContentOnly);
}

Result Object::ResetContent()
{
    return DeleteAttribute(ContentName());
}

}  // namespace zorvex_api
