#pragma once

#include "zorvex_api/TraverseContext.h"

namespace zorvex_api
{

class ClassData;

/// Moves the ids of a subtree that is being detached from the old root's table to the table of the
/// new root, those of children kept aside too. URIs aren't followed.
class SplitTreeContext final : public TraverseContext
{
public:
    SplitTreeContext(ClassData& oldRoot, ClassData& newRoot);

    zorvexTraverseResult Visit(Object* object) override;

private:
    void Move(ClassData& data);

    ClassData& m_oldRoot;
    ClassData& m_newRoot;
};

}  // namespace zorvex_api
