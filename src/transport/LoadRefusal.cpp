#include "transport/LoadRefusal.h"

namespace zorvex_api::internal
{

namespace
{

thread_local bool t_refused = false;

}  // namespace

void NoteRefusal() noexcept
{
    t_refused = true;
}

RefusalWatch::RefusalWatch() : m_before(t_refused)
{
    t_refused = false;
}

RefusalWatch::~RefusalWatch()
{
    t_refused = m_before;
}

bool RefusalWatch::WasRefused() const
{
    return t_refused;
}

}  // namespace zorvex_api::internal
