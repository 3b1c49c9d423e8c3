#pragma once

#include "zorvex_api/Export.h"

namespace zorvex_api
{

/// Announces one class or plug-in to the library. An application or a further library defines it
/// as a static object; its constructor joins the process-wide chain and does nothing else, except
/// for a plug-in that arrives when the library runs already, which is registered at once. A class
/// that arrives late is registered at the next access to the class metadata.
///
/// The chain is made once and survives `Terminate`. When a library is unloaded its classes leave
/// with it, except those that another library announced too; no object that it made may be left.
class ZORVEX_API LinkNode
{
public:
    enum Kind
    {
        kClass = 0,
        kPlugin = 1
    };

    /// `initialiser` fills the descriptor of the thing and returns non-zero on success.
    /// For kind 0 its argument is a `ClassInitRecord*`, for kind 1 the new `PluginDescriptor*`.
    LinkNode(int (*initialiser)(void*), int kind);
    virtual ~LinkNode();
    LinkNode(const LinkNode&) = delete;
    LinkNode& operator=(const LinkNode&) = delete;

    LinkNode* GetPrevious() const { return m_previous; }
    LinkNode* GetNext() const { return m_next; }
    int GetKind() const { return m_kind; }
    /// Calls the initialiser; a node without one never succeeds.
    int RunInitialiser(void* argument) const
    {
        return m_initialiser != nullptr ? m_initialiser(argument) : 0;
    }

    /// The ClassDescriptor or PluginDescriptor, by kind; null until the node has been run.
    void* GetDescriptor() const { return m_descriptor; }
    void SetDescriptor(void* descriptor) { m_descriptor = descriptor; }
    bool IsDone() const { return m_done != 0; }
    void SetDone(bool done) { m_done = done ? 1 : 0; }

    static LinkNode* m_pHeadNode;
    static LinkNode* m_pTailNode;
    /// The first class node that came after the registry was filled and hasn't been run yet.
    static LinkNode* m_pRegisterNode;

private:
    LinkNode* m_previous;
    LinkNode* m_next;
    int (*m_initialiser)(void*);
    int m_kind;
    void* m_descriptor;
    int m_done;
};

class ClassDescriptor;

/// What a class initialiser gets.
struct ClassInitRecord
{
    const int version;            ///< 1
    ClassDescriptor* descriptor;  ///< the new descriptor, to be filled
    short* staticClass;           ///< out: where the class keeps its class value
};

}  // namespace zorvex_api
