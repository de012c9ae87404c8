#pragma once

#include "desktop/base/UniqueFd.h"

#include "tests/desktop/support/OwnMounts.h"
#include "tests/desktop/support/Waiting.h"

#include <fcntl.h>
#include <linux/fuse.h>
#include <sys/uio.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

namespace testsupport {

/// A file system with one file, "medium", whose reads fail, or are never answered, from the moment on that a test says so.
/// Wants root.
class ServedFileSystem {
public:
    /// Mounts it on @p folder; the file holds @p content.
    ServedFileSystem(std::string folder, std::string content)
        : m_folder(std::move(folder))
        , m_content(std::move(content))
        , m_server(open("/dev/fuse", O_RDWR | O_CLOEXEC))
    {
        const std::string options =
            "fd=" + std::to_string(m_server.get()) + ",rootmode=40000,user_id=0,group_id=0,allow_other";
        m_works = m_mounts.refusal().empty() && m_server &&
                  ::mount("served", m_folder.c_str(), "fuse", MS_NODEV | MS_NOSUID, options.c_str()) == 0;
        if (m_works) {
            m_thread = std::thread([this] { serve(); });
        }
    }
    ~ServedFileSystem()
    {
        if (m_works) {
            umount2(m_folder.c_str(), MNT_FORCE); // ends every read that waits
            umount2(m_folder.c_str(), MNT_DETACH);
            m_thread.join();
        }
    }
    ServedFileSystem(const ServedFileSystem&) = delete;
    ServedFileSystem& operator=(const ServedFileSystem&) = delete;

    /// Whether this machine mounts one.
    bool works() const { return m_works; }
    std::string file() const { return m_folder + "/medium"; }
    /// From now on reads end with an I/O error.
    void fail() { m_fails = true; }
    /// From now on reads are not answered.
    void fallSilent() { m_isSilent = true; }
    /// From now on reads are answered again; those that have not been stay so.
    void answerAgain() { m_isSilent = false; }
    /// How often something has been opened.
    int opens() const { return m_opens; }
    /// Waits until a read has not been answered.
    bool hasSilenced() const
    {
        return becomes([this] { return m_silenced.load(); });
    }

private:
    static constexpr std::uint64_t kFile = 2;

    void serve()
    {
        std::vector<char> request(FUSE_MIN_READ_BUFFER + 128UL * 1024);
        while (true) {
            const ssize_t got = TEMP_FAILURE_RETRY(read(m_server.get(), request.data(), request.size()));
            if (got < 0 && errno == ENOENT) {
                continue; // the one who asked has gone
            }
            if (got < static_cast<ssize_t>(sizeof(fuse_in_header))) {
                return; // unmounted
            }
            fuse_in_header header = {};
            std::memcpy(&header, request.data(), sizeof header);
            answer(header, request.data() + sizeof header);
        }
    }

    void answer(const fuse_in_header& header, const char* arguments)
    {
        switch (header.opcode) {
        case FUSE_INIT:
            reply(header, initial());
            break;
        case FUSE_LOOKUP:
            std::strcmp(arguments, "medium") == 0 ? reply(header, entry()) : fail(header, ENOENT);
            break;
        case FUSE_GETATTR:
            reply(header, attributes(header.nodeid));
            break;
        case FUSE_OPEN:
        case FUSE_OPENDIR:
            ++m_opens;
            reply(header, fuse_open_out{1, FOPEN_DIRECT_IO, 0});
            break;
        case FUSE_READ:
            answerRead(header, arguments);
            break;
        case FUSE_FORGET:
        case FUSE_BATCH_FORGET:
            break;
        case FUSE_FLUSH:
        case FUSE_RELEASE:
        case FUSE_RELEASEDIR:
            send(header, 0, nullptr, 0);
            break;
        default:
            fail(header, ENOSYS);
        }
    }

    void answerRead(const fuse_in_header& header, const char* arguments)
    {
        fuse_read_in wanted = {};
        std::memcpy(&wanted, arguments, sizeof wanted);
        if (m_isSilent) {
            m_silenced = true;
            return;
        }
        if (m_fails) {
            fail(header, EIO);
            return;
        }
        const std::size_t begin = std::min<std::size_t>(wanted.offset, m_content.size());
        send(header, 0, m_content.data() + begin, std::min<std::size_t>(wanted.size, m_content.size() - begin));
    }

    static fuse_init_out initial()
    {
        fuse_init_out out = {};
        out.major = FUSE_KERNEL_VERSION;
        out.minor = FUSE_KERNEL_MINOR_VERSION;
        out.max_write = FUSE_MIN_READ_BUFFER;
        return out;
    }
    fuse_attr_out attributes(std::uint64_t node) const
    {
        fuse_attr_out out = {};
        out.attr_valid = 3600;
        out.attr.ino = node;
        out.attr.mode = node == kFile ? S_IFREG | 0444U : S_IFDIR | 0555U;
        out.attr.nlink = 1;
        out.attr.size = node == kFile ? m_content.size() : 0;
        return out;
    }
    fuse_entry_out entry() const
    {
        fuse_entry_out out = {};
        out.nodeid = kFile;
        out.entry_valid = 3600;
        out.attr_valid = 3600;
        out.attr = attributes(kFile).attr;
        return out;
    }

    template <typename Out>
    void reply(const fuse_in_header& header, const Out& out)
    {
        send(header, 0, &out, sizeof out);
    }
    void fail(const fuse_in_header& header, int error) { send(header, -error, nullptr, 0); }
    void send(const fuse_in_header& header, int error, const void* data, std::size_t size)
    {
        fuse_out_header out = {static_cast<std::uint32_t>(sizeof out + size), error, header.unique};
        const std::array<iovec, 2> parts = {{{&out, sizeof out}, {const_cast<void*>(data), size}}};
        const ssize_t written = writev(m_server.get(), parts.data(), size > 0 ? 2 : 1);
        static_cast<void>(written); // whoever asked may have gone
    }

    OwnMounts m_mounts;
    std::string m_folder;
    std::string m_content;
    desktop::UniqueFd m_server;
    bool m_works = false;
    std::atomic<bool> m_fails{false};
    std::atomic<bool> m_isSilent{false};
    std::atomic<bool> m_silenced{false};
    std::atomic<int> m_opens{0};
    std::thread m_thread;
};

} // namespace testsupport
