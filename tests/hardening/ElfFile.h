#pragma once

#include <elf.h>
#include <link.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace testsupport {

/// An ELF file of this program's own architecture, as far as the loader looks at it.
class ElfFile {
public:
    explicit ElfFile(const std::string& path)
    {
        std::ifstream file(path, std::ios::binary);
        m_bytes.resize(static_cast<std::size_t>(std::filesystem::file_size(path)));
        file.read(m_bytes.data(), static_cast<std::streamsize>(m_bytes.size()));
        m_header = at<ElfW(Ehdr)>(0);
        if (std::memcmp(m_header.e_ident, ELFMAG, SELFMAG) != 0) {
            throw std::runtime_error(path + " is no ELF file");
        }
    }

    /// What kind of file it is (ET_...).
    ElfW(Half) type() const { return m_header.e_type; }

    std::vector<ElfW(Phdr)> segments() const { return table<ElfW(Phdr)>(m_header.e_phoff, m_header.e_phnum); }

    /// The first segment of @p type (PT_...), if there is one.
    std::optional<ElfW(Phdr)> segment(ElfW(Word) type) const
    {
        for (const ElfW(Phdr) & candidate : segments()) {
            if (candidate.p_type == type) {
                return candidate;
            }
        }
        return std::nullopt;
    }

    /// Value of the dynamic entry @p tag (DT_...), if there is one.
    std::optional<ElfW(Xword)> dynamic(ElfW(Sxword) tag) const
    {
        const auto where = segment(PT_DYNAMIC).value();
        for (const auto& entry : table<ElfW(Dyn)>(where.p_offset, where.p_filesz / sizeof(ElfW(Dyn)))) {
            if (entry.d_tag == tag) {
                return entry.d_un.d_val;
            }
        }
        return std::nullopt;
    }

    /// Names that the file leaves to others.
    std::set<std::string> undefinedNames() const
    {
        std::set<std::string> names;
        const auto sections = table<ElfW(Shdr)>(m_header.e_shoff, m_header.e_shnum);
        for (const ElfW(Shdr) & section : sections) {
            if (section.sh_type != SHT_DYNSYM) {
                continue;
            }
            const auto strings = sections.at(section.sh_link).sh_offset;
            for (const auto& symbol : table<ElfW(Sym)>(section.sh_offset, section.sh_size / sizeof(ElfW(Sym)))) {
                if (symbol.st_shndx == SHN_UNDEF) {
                    names.insert(m_bytes.c_str() + strings + symbol.st_name);
                }
            }
        }
        return names;
    }

private:
    template <typename T>
    T at(std::size_t offset) const
    {
        T value = {};
        if (offset + sizeof value > m_bytes.size()) {
            throw std::runtime_error("the ELF file is cut short");
        }
        std::memcpy(&value, m_bytes.data() + offset, sizeof value);
        return value;
    }

    template <typename T>
    std::vector<T> table(std::size_t offset, std::size_t count) const
    {
        std::vector<T> rows;
        for (std::size_t row = 0; row < count; ++row) {
            rows.push_back(at<T>(offset + row * sizeof(T)));
        }
        return rows;
    }

    std::string m_bytes;
    ElfW(Ehdr) m_header = {};
};

} // namespace testsupport
