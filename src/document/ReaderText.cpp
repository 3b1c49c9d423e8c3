#include "document/ParserImpl.h"

#include "objectmodel/AttributeStore.h"

namespace zorvex_api
{

namespace
{

bool IsWhiteSpace(TextView text)
{
    return text.find_first_not_of(u" \t\r\n") == text.npos;
}

}  // namespace

void ParserImpl::Characters(TextView text)
{
    if (!m_inDocument || m_skipDepth > 0)
    {
        return;
    }
    m_text.append(text);
    const std::size_t gathered = m_inContentElement ? m_container.gathered.size()
                                 : m_depthOpen > 0  ? Top().gathered.size()
                                                    : 0;
    if ((m_text.size() + gathered) * sizeof(char16_t) > limits.valueBytes)
    {
        limits.FailValue();
    }
}

/// Text is judged in whole runs up to the next tag: the parser may deliver one in pieces.
void ParserImpl::FlushText(bool beforeStartTag)
{
    if (m_text.empty())
    {
        return;
    }
    if (!m_inContentElement)
    {
        JudgeRun(Top(), m_text, beforeStartTag);
    }
    else if (!IsWhiteSpace(m_text))
    {
        m_container.gathered += m_text;
    }
    m_text.clear();
}

void ParserImpl::JudgeRun(Frame& frame, TextView run, bool beforeStartTag)
{
    ClassDescriptorImpl* impl = ClassDescriptorImpl::Of(frame.data->GetClassDescriptor());
    const FieldDescriptor* content = impl->Layout().Content();
    const bool blank = IsWhiteSpace(run);
    if (blank && (content == nullptr || content->Type() != zorvexFieldString))
    {
        return;
    }
    if (content == nullptr && !impl->IsRuntimeClass())
    {
        Fail(520, String(u"Unexpected element content: <") + impl->Name() + String(u">: >") +
                      ToString(run) + String(u"<"));
        return;
    }
    if (content == nullptr)
    {
        impl->AddRuntimeField(u"Content", zorvexFieldString, nullptr, nullptr);
    }
    if (beforeStartTag && run.back() == u'\n')
    {
        // The writer puts each element on a line of its own: that break isn't part of the text, or
        // the text would grow with each save.
        run.remove_suffix(1);
    }
    frame.gathered += run;
}

void ParserImpl::StoreContent(Frame& frame)
{
    if (frame.gathered.empty())
    {
        return;
    }
    const ClassDescriptorImpl* impl = ClassDescriptorImpl::Of(frame.data->GetClassDescriptor());
    if (FieldDescriptor* content = impl->Layout().Content())
    {
        attribute_store::SetTextQuick(*frame.data, *content, frame.gathered, m_treatEmptyAsSet,
                                      *result);
    }
    frame.gathered.clear();
}

void ParserImpl::Finish()
{
    for (std::size_t i = 0; i < m_depthOpen; ++i)
    {
        StoreContent(m_frames[i]);
    }
}

void ParserImpl::CloseContentElement()
{
    m_inContentElement = false;
    ClassData& data = *Current();
    if (m_container.form != SAXContainerObject::Form::Field)
    {
        StoreBoundText(data, m_container.form, m_container.gathered);
        return;
    }
    if (m_container.gathered.empty())
    {
        return;
    }
    FieldDescriptor& field = *m_container.field;
    const FieldData* stored = data.FindField(&field);
    if (stored != nullptr && stored->IsSet())
    {
        // A repeated element: its text joins what stands there.
        std::u16string joined;
        attribute_store::AppendText(data, field, *stored, joined);
        m_container.gathered.insert(0, joined);
    }
    attribute_store::SetTextQuick(data, field, m_container.gathered, m_treatEmptyAsSet, *result);
}

}  // namespace zorvex_api
