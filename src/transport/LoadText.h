#pragma once

#include "runtime/Text.h"
#include "zorvex_api/MemoryStream.h"

namespace zorvex_api::internal
{

/// The stream on a document that was given as text. It holds UTF-8, whatever encoding the text
/// declares.
class LoadTextStream : public MemoryStream
{
public:
    /// `gone`, which must outlive the stream, becomes true when the stream is deleted.
    LoadTextStream(TextView text, bool& gone);
    ~LoadTextStream() override;

private:
    bool& m_gone;
};

/// Whether a stream holds a document that was given as text.
bool IsLoadText(const Stream* stream);

/// The text without leading white space when it is a document and no URI; else empty.
TextView DocumentText(TextView uri);

}  // namespace zorvex_api::internal
