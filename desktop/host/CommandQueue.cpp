#include "desktop/host/CommandQueue.h"

namespace desktop {

namespace {

void refuse(QueuedCommand& command)
{
    command.reply.set_value({false, Json::Value(Json::objectValue), "The host is closing: the command has not been run."});
}

} // namespace

CommandQueue::CommandQueue(Runner run)
    : m_run(std::move(run))
    , m_thread(&CommandQueue::runCommands, this)
{
}

std::future<CommandReply> CommandQueue::add(std::string name, Json::Value request)
{
    QueuedCommand command = {std::move(name), std::move(request), {}};
    std::future<CommandReply> reply = command.reply.get_future();
    {
        const LockGuard lock(m_mutex);
        if (!m_closed) {
            m_commands.push_back(std::move(command));
            m_changed.notify_one();
            return reply;
        }
    }
    refuse(command);
    return reply;
}

void CommandQueue::close()
{
    std::deque<QueuedCommand> refused;
    {
        const LockGuard lock(m_mutex);
        m_closed = true;
        refused.swap(m_commands);
        m_changed.notify_one();
    }
    for (QueuedCommand& command : refused) {
        refuse(command);
    }
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

void CommandQueue::runCommands()
{
    UniqueLock lock(m_mutex);
    while (!m_closed) {
        if (m_commands.empty()) {
            m_changed.wait(lock.native());
            continue;
        }
        QueuedCommand command = std::move(m_commands.front());
        m_commands.pop_front();
        lock.unlock();
        m_run(command);
        lock.lock();
    }
}

} // namespace desktop
