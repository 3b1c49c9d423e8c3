#include "objectmodel/FieldData.h"

#include <cstddef>

#include "objectmodel/ClassData.h"
#include "objectmodel/ElementList.h"
#include "objectmodel/ExternalRep.h"
#include "objectmodel/FieldDescriptor.h"
#include "objectmodel/Id.h"
#include "runtime/FreeList.h"
#include "runtime/NumberText.h"
#include "zorvex_api/Allocator.h"

namespace zorvex_api
{

namespace
{

constexpr int kVectorLength = 3;
constexpr int kMatrixOrder = 4;
constexpr int kMatrixLength = kMatrixOrder * kMatrixOrder;
constexpr std::uintptr_t kOwnedText = 1;

using Form = FieldData::Form;

Form NumberForm(const FieldDescriptor& field, Form single, Form fixed, Form variable)
{
    if (field.IsVariableLength())
    {
        return variable;
    }
    return field.Length() == 1 ? single : fixed;
}

Form ContentForm(const FieldDescriptor& field)
{
    switch (field.ClassValue())
    {
        case class_value::kInteger:
        case class_value::kLogical:
            return NumberForm(field, Form::Int, Form::Ints, Form::IntArray);
        case class_value::kDouble:
            return NumberForm(field, Form::Double, Form::Doubles, Form::DoubleArray);
        case class_value::kString:
        case class_value::kAny:
            return Form::Text;
        default:
            return Form::None;
    }
}

template <class T>
T* MakeNumbers(int length)
{
    const std::size_t bytes = static_cast<std::size_t>(length) * sizeof(T);
    T* numbers = static_cast<T*>(SmallBlocks::Take(bytes));
    Allocator::set(numbers, 0, bytes);
    return numbers;
}

template <class T>
void FreeNumbers(T* numbers, int length)
{
    SmallBlocks::Give(numbers, static_cast<std::size_t>(length) * sizeof(T));
}

double* MakeDoubles(const FieldDescriptor& field)
{
    double* numbers = MakeNumbers<double>(FieldData::NumberCount(field));
    if (field.Type() == zorvexFieldMatrix)
    {
        for (int i = 0; i < kMatrixOrder; ++i)
        {
            numbers[i * (kMatrixOrder + 1)] = 1.0;
        }
    }
    return numbers;
}

bool IsLogical(const FieldDescriptor& field)
{
    return field.Type() == zorvexFieldLogical || (field.Type() == zorvexFieldContentElement &&
                                                  field.ClassValue() == class_value::kLogical);
}

/// Takes one number or logical after the other out of a default.
class DefaultReader
{
public:
    explicit DefaultReader(const FieldDescriptor& field)
        : m_rest(field.DefaultView()), m_logical(IsLogical(field))
    {
    }

    bool NextInt(int& out)
    {
        if (m_logical)
        {
            const TextView token = NextToken();
            out = token == u"true" ? 1 : 0;
            return !token.empty();
        }
        const number::ParsedInt parsed = number::ParseInt(m_rest);
        out = parsed.value;
        return Advance(parsed.end);
    }
    bool NextDouble(double& out)
    {
        const number::ParsedDouble parsed = number::ParseDouble(m_rest);
        out = parsed.value;
        return Advance(parsed.end);
    }

private:
    TextView NextToken()
    {
        constexpr TextView kSeparators = u" ,";
        const std::size_t begin = m_rest.find_first_not_of(kSeparators);
        if (begin == TextView::npos)
        {
            return {};
        }
        m_rest.remove_prefix(begin);
        const TextView token = m_rest.substr(0, m_rest.find_first_of(kSeparators));
        m_rest.remove_prefix(token.size());
        return token;
    }
    bool Advance(const char16_t* end)
    {
        const bool found = end != m_rest.data();
        m_rest.remove_prefix(static_cast<std::size_t>(end - m_rest.data()));
        m_rest.remove_prefix(m_rest.empty() ? 0 : 1);  // whatever divides the numbers
        return found;
    }

    TextView m_rest;
    bool m_logical;
};

void ReadDefault(FieldData& data)
{
    DefaultReader reader(*data.descriptor);
    int whole = 0;
    double number = 0.0;
    switch (FieldData::FormOf(*data.descriptor))
    {
        case Form::Int:
            reader.NextInt(whole);
            data.SetInt(whole);
            break;
        case Form::Ints:
            for (int i = 0; i < data.descriptor->Length() && reader.NextInt(whole); ++i)
            {
                data.Ints()[i] = whole;
            }
            break;
        case Form::IntArray:
            while (reader.NextInt(whole))
            {
                data.IntArray()->Add(whole);
            }
            break;
        case Form::Double:
            reader.NextDouble(number);
            data.SetDouble(number);
            break;
        case Form::Doubles:
            for (int i = 0;
                 i < FieldData::NumberCount(*data.descriptor) && reader.NextDouble(number); ++i)
            {
                data.Doubles()[i] = number;
            }
            break;
        case Form::DoubleArray:
            while (reader.NextDouble(number))
            {
                data.DoubleArray()->Add(number);
            }
            break;
        case Form::Text:
            data.SetPointer(stored::Make(data.descriptor->DefaultView()));
            break;
        case Form::External:
            data.External()->StoreText(data.descriptor->DefaultView());
            break;
        default:
            break;
    }
}

/// Fields whose default stands in a new value; the others show theirs while they aren't set.
bool TakesDefault(const FieldDescriptor& field)
{
    switch (field.Type())
    {
        case zorvexFieldLogical:
        case zorvexFieldInt:
        case zorvexFieldDouble:
        case zorvexFieldSingleURI:
        case zorvexFieldContentElement:
            return field.HasDefault();
        default:
            return false;
    }
}

void DeleteChild(Object* child, unsigned options)
{
    if (child == nullptr || (options & FieldData::kLeaveChildren) != 0)
    {
        return;
    }
    if ((options & FieldData::kMarkChildren) != 0)
    {
        ClassData::Of(child)->stateFlags |= ClassData::kDeletedWithParent;
    }
    delete child;
}

void DeleteList(ElementList* list, unsigned options)
{
    list->Walk(
        [options](Object* child)
        {
            DeleteChild(child, options);
            return true;
        });
    delete list;
}

void DeleteExternals(Array<ExternalRep*>* externals)
{
    for (ExternalRep* rep : *externals)
    {
        ExternalRep::Destroy(rep);
    }
    delete externals;
}

}  // namespace

Form FieldData::FormOf(const FieldDescriptor& descriptor)
{
    switch (descriptor.Type())
    {
        case zorvexFieldLogical:
        case zorvexFieldInt:
            return NumberForm(descriptor, Form::Int, Form::Ints, Form::IntArray);
        case zorvexFieldDouble:
            return NumberForm(descriptor, Form::Double, Form::Doubles, Form::DoubleArray);
        case zorvexFieldMatrix:
        case zorvexFieldVector:
            return Form::Doubles;
        case zorvexFieldString:
            return Form::Text;
        case zorvexFieldSingleReference:
            return Form::SingleId;
        case zorvexFieldMultipleReference:
            return Form::Ids;
        case zorvexFieldSingleElement:
            return Form::Element;
        case zorvexFieldMultipleElement:
            return Form::Elements;
        case zorvexFieldSingleURI:
        case zorvexFieldExternalReference:
            return Form::External;
        case zorvexFieldMultipleURI:
            return Form::Externals;
        case zorvexFieldContentElement:
            return ContentForm(descriptor);
        default:
            return descriptor.IsEnum() ? Form::Enum : Form::None;
    }
}

bool FieldData::HoldsNumbers(const FieldDescriptor& descriptor)
{
    switch (FormOf(descriptor))
    {
        case Form::Int:
        case Form::Ints:
        case Form::IntArray:
        case Form::Double:
        case Form::Doubles:
        case Form::DoubleArray:
            return true;
        default:
            return false;
    }
}

int FieldData::NumberCount(const FieldDescriptor& descriptor)
{
    switch (descriptor.Type())
    {
        case zorvexFieldMatrix:
            return kMatrixLength;
        case zorvexFieldVector:
            return kVectorLength;
        default:
            return descriptor.Length();
    }
}

TextView FieldData::EnumText() const
{
    if (!IsSet() || value == 0)
    {
        return TextView(u"", 0);
    }
    if ((value & kOwnedText) != 0)
    {
        return TextView(reinterpret_cast<const char16_t*>(value & ~kOwnedText));
    }
    return View(*reinterpret_cast<const String*>(value));
}

void FieldData::SetEnumCopy(TextView text)
{
    const std::size_t bytes = text.size() * sizeof(char16_t);
    char16_t* copy = static_cast<char16_t*>(Allocator::allocate(bytes + sizeof(char16_t)));
    Allocator::copy(copy, text.data(), bytes);
    copy[text.size()] = 0;
    value = reinterpret_cast<std::uintptr_t>(copy) | kOwnedText;
}

void FieldData::FreeEnum()
{
    if (IsSet() && (value & kOwnedText) != 0)
    {
        Allocator::deallocate(reinterpret_cast<void*>(value & ~kOwnedText));
    }
    value = 0;
}

bool FieldData::InitEmpty(ClassData& owner)
{
    switch (FormOf(*descriptor))
    {
        case Form::None:
            return false;
        case Form::Int:
            SetInt(0);
            break;
        case Form::Double:
            SetDouble(0.0);
            break;
        case Form::Ints:
            SetPointer(MakeNumbers<int>(descriptor->Length()));
            break;
        case Form::Doubles:
            SetPointer(MakeDoubles(*descriptor));
            break;
        case Form::IntArray:
            SetPointer(new Array<int>);
            break;
        case Form::DoubleArray:
            SetPointer(new Array<double>);
            break;
        case Form::Text:
        case Form::Enum:
        case Form::Element:
            value = 0;
            break;
        case Form::SingleId:
            SetPointer(new Id);
            break;
        case Form::Ids:
            SetPointer(new Array<Id>);
            break;
        case Form::Elements:
            SetPointer(new ElementList((owner.stateFlags & ClassData::kChainedLists) != 0));
            break;
        case Form::External:
            SetPointer(ExternalRep::Make(owner));
            break;
        case Form::Externals:
            SetPointer(new Array<ExternalRep*>);
            break;
    }
    return true;
}

bool FieldData::InitValue(ClassData& owner, bool keepEmpty)
{
    if (keepEmpty && FormOf(*descriptor) == Form::External)
    {
        return true;
    }
    if (!InitEmpty(owner))
    {
        return false;
    }
    if (TakesDefault(*descriptor))
    {
        ReadDefault(*this);
    }
    return true;
}

void FieldData::DeleteValue(ClassData&, unsigned options)
{
    if (!IsSet())
    {
        return;
    }
    // The word is cleared first: whatever ends here finds no value in this field any more.
    const FieldData old = *this;
    value = kNotSet;
    switch (FormOf(*descriptor))
    {
        case Form::None:
        case Form::Int:
        case Form::Double:
            break;
        case Form::Ints:
            FreeNumbers(old.Ints(), descriptor->Length());
            break;
        case Form::Doubles:
            FreeNumbers(old.Doubles(), NumberCount(*descriptor));
            break;
        case Form::IntArray:
            delete old.IntArray();
            break;
        case Form::DoubleArray:
            delete old.DoubleArray();
            break;
        case Form::Text:
            stored::Release(old.Text());
            break;
        case Form::Enum:
            FieldData(old).FreeEnum();
            break;
        case Form::SingleId:
            delete old.SingleId();
            break;
        case Form::Ids:
            delete old.Ids();
            break;
        case Form::Element:
            DeleteChild(old.Element(), options);
            break;
        case Form::Elements:
            DeleteList(old.Elements(), options);
            break;
        case Form::External:
            ExternalRep::Destroy(old.External());
            break;
        case Form::Externals:
            DeleteExternals(old.Externals());
            break;
    }
}

void FieldData::ResetValue(ClassData& owner)
{
    DeleteValue(owner, kDeleteAll);
}

bool FieldData::HasValue(const ClassData&, bool checkDefault) const
{
    if (!IsSet())
    {
        return false;
    }
    if (!checkDefault)
    {
        return true;
    }
    if (descriptor->HasDefault())
    {
        return FormOf(*descriptor) != Form::None;
    }
    switch (FormOf(*descriptor))
    {
        case Form::None:
            return false;
        case Form::Int:
        case Form::Double:
        case Form::Ints:
        case Form::Doubles:
            return true;
        case Form::IntArray:
            return IntArray()->GetSize() > 0;
        case Form::DoubleArray:
            return DoubleArray()->GetSize() > 0;
        case Form::Text:
            return !stored::IsEmpty(Text());
        case Form::Enum:
            return !EnumText().empty();
        case Form::SingleId:
            return !SingleId()->IsEmpty();
        case Form::Ids:
            return Ids()->GetSize() > 0;
        case Form::Element:
            return Element() != nullptr;
        case Form::Elements:
            return Elements()->Count() > 0;
        case Form::External:
            return External()->HasText() || External()->HasTarget();
        case Form::Externals:
            return Externals()->GetSize() > 0;
    }
    return false;
}

}  // namespace zorvex_api
