#pragma once

#include <cstddef>

namespace desktop {

/// The beginning of an open file, in memory for as long as the object lives. A file that is cut or whose volume is removed
/// meanwhile ends the process, which is there to be ended.
class MappedFile {
public:
    /// Throws MediaError when @p fd is empty or cannot be mapped.
    explicit MappedFile(int fd);
    ~MappedFile();
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;

    const unsigned char* data() const { return m_data; }
    std::size_t size() const { return m_size; }

private:
    unsigned char* m_data;
    std::size_t m_size;
};

} // namespace desktop
