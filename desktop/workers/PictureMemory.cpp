#include "desktop/workers/PictureMemory.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

namespace desktop {

namespace {

constexpr std::size_t kMostSpares = 2;
constexpr std::size_t kLargestSpare = 1920UL * 1080 * 4; // bytes; larger ones are asked for now and then at most

void check(bool done)
{
    if (!done) {
        throw std::system_error(errno, std::generic_category(), "memory for a picture");
    }
}

} // namespace

// A process that cut the file would end this one.
PictureMemory::PictureMemory(std::size_t size)
    : m_fd(memfd_create("picture", MFD_CLOEXEC | MFD_ALLOW_SEALING))
    , m_size(size)
{
    check(m_fd && ftruncate(m_fd.get(), static_cast<off_t>(size)) == 0 &&
          fcntl(m_fd.get(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL) == 0);
    void* const pixels = mmap(nullptr, size, PROT_READ, MAP_SHARED, m_fd.get(), 0);
    check(pixels != MAP_FAILED);
    m_pixels = static_cast<const std::uint8_t*>(pixels);
}

PictureMemory::~PictureMemory()
{
    munmap(const_cast<std::uint8_t*>(m_pixels), m_size);
}

std::shared_ptr<PictureMemory> PictureMemories::take(std::size_t size)
{
    {
        const LockGuard lock(m_spares->mutex);
        std::erase_if(m_spares->memories, [size](const auto& memory) { return memory->size() != size; });
        if (!m_spares->memories.empty()) {
            std::shared_ptr<PictureMemory> memory = std::move(m_spares->memories.back());
            m_spares->memories.pop_back();
            return memory;
        }
    }
    return std::make_shared<PictureMemory>(size);
}

std::shared_ptr<const std::uint8_t> PictureMemories::picture(std::shared_ptr<PictureMemory> memory) const
{
    const std::uint8_t* const pixels = memory->pixels();
    return {pixels, [spares = m_spares, memory = std::move(memory)](const std::uint8_t*) { spares->add(memory); }};
}

void PictureMemories::clear()
{
    const LockGuard lock(m_spares->mutex);
    m_spares->memories.clear();
}

void PictureMemories::Spares::add(std::shared_ptr<PictureMemory> memory)
{
    const LockGuard lock(mutex);
    if (memory->size() <= kLargestSpare && memories.size() < kMostSpares) {
        memories.push_back(std::move(memory));
    }
}

} // namespace desktop
