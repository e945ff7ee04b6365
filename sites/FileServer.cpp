#include "sites/FileServer.h"

#include <csignal>
#include <stdexcept>
#include <utility>

namespace vormel::sites {

namespace {

// Writing to a connection that the client closed must not end the program, and the program's signals are no business
// of these threads. Threads inherit the mask of the one that starts them.
void blockSignals()
{
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, nullptr);
}

} // namespace

FileServer::FileServer()
    : FileServer(Options{})
{}

FileServer::FileServer(const Options& options)
    : m_listener(options.port)
{
    if (options.tls)
        m_tls.emplace(*options.tls);
    for (const auto& [path, resource] : options.resources)
        serve(path, resource);
    m_thread = std::thread([this] { acceptConnections(); });
}

FileServer::~FileServer()
{
    m_interrupt.stop();
    m_thread.join();
    // All at once before the list waits for one after the other.
    for (auto& connection : m_connections)
        connection.stop();
}

std::string FileServer::url(std::string_view path) const
{
    return url("127.0.0.1", path);
}

std::string FileServer::url(std::string_view host, std::string_view path) const
{
    return std::string(m_tls ? "https://" : "http://")
        .append(host)
        .append(":")
        .append(std::to_string(port()))
        .append(path);
}

void FileServer::serve(std::string path, Resource resource)
{
    m_routes.serve(std::move(path), std::move(resource));
}

void FileServer::setAnswers(const std::string& path, std::vector<Answer> answers)
{
    m_routes.setAnswers(path, std::move(answers));
}

void FileServer::release()
{
    const std::scoped_lock lock(m_mutex);
    for (auto& connection : m_connections)
        connection.release();
}

bool FileServer::waitForRequests(std::string_view path, std::size_t count, std::chrono::milliseconds time) const
{
    return m_activity.waitForRequests(path, count, time);
}

bool FileServer::waitForStalled(int count, std::chrono::milliseconds time) const
{
    return m_activity.waitForStalled(count, time);
}

void FileServer::acceptConnections()
{
    blockSignals();
    while (true) {
        auto socket = m_listener.accept(m_interrupt);
        if (!socket.isOpen())
            return;
        const std::scoped_lock lock(m_mutex);
        dropEndedConnections();
        startConnection(std::move(socket));
    }
}

void FileServer::startConnection(FileDescriptor socket)
{
    try {
        m_connections.emplace_back(std::move(socket), m_tls ? &*m_tls : nullptr, m_routes, m_activity);
    } catch (const std::runtime_error&) {
        // Out of descriptors or threads: the client sees its connection end, and the others go on.
    }
}

void FileServer::dropEndedConnections()
{
    m_connections.remove_if([](const Connection& connection) { return connection.isOver(); });
}

} // namespace vormel::sites
