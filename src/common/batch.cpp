#include "common/batch.h"

namespace velmora {

Batch::Run::Run(Batch& batch) : m_batch(batch)
{
    Q_ASSERT(!batch.running());
    m_batch.setRunning(true);
}

Batch::Run::~Run()
{
    m_batch.setRunning(false);
}

void Batch::setRunning(bool running)
{
    m_running = running;
    Q_EMIT runningChanged(running);
}

} // namespace velmora
