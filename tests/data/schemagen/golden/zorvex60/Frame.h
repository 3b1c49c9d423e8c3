// Generated from the vocabulary of the schemas; don't edit.
#pragma once

#include "zorvex60/Common.h"

namespace zorvex60
{

/// The class value of Frame in this session; 0 before the first.
extern ZORVEX_API short zorvexClassFrame;

/// Class `Frame`: schema type `FrameType`, version "1.0 Tiny.xsd".
///
/// Base: zorvex_api::Object. In comparisons it counts as Object.
class ZORVEX_API Frame : public Object
{
public:
    /// A root that belongs to the caller.
    Frame();
    /// Attaches the new object to `owner`, which may be null. A refusal raises code 2.
    explicit Frame(Object* owner);
    ~Frame() override;

private:
    Frame(const Frame&) = delete;
    Frame& operator=(const Frame&) = delete;
};

}  // namespace zorvex60
