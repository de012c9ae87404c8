#include "desktop/player/Mpv.h"

#include <stdexcept>
#include <vector>

namespace desktop {

namespace {

std::vector<const char*> terminated(std::initializer_list<const char*> words)
{
    std::vector<const char*> all = words;
    all.push_back(nullptr);
    return all;
}

} // namespace

Mpv::Mpv()
    : m_mpv(mpv_create())
{
    if (m_mpv == nullptr) {
        throw std::runtime_error("mpv does not start.");
    }
}

void Mpv::setOption(const char* name, const char* value) const
{
    if (mpv_set_option_string(m_mpv.get(), name, value) < 0) {
        throw std::runtime_error(std::string("mpv has no option ") + name);
    }
}

void Mpv::initialize() const
{
    if (mpv_initialize(m_mpv.get()) < 0) {
        throw std::runtime_error("mpv does not start.");
    }
}

void Mpv::set(const char* name, const std::string& value) const
{
    mpv_set_property_string(m_mpv.get(), name, value.c_str());
}

void Mpv::set(const char* name, double value) const
{
    mpv_set_property(m_mpv.get(), name, MPV_FORMAT_DOUBLE, &value);
}

void Mpv::setFlag(const char* name, bool value) const
{
    int flag = value ? 1 : 0;
    mpv_set_property(m_mpv.get(), name, MPV_FORMAT_FLAG, &flag);
}

double Mpv::number(const char* name, double otherwise) const
{
    double value = 0;
    return mpv_get_property(m_mpv.get(), name, MPV_FORMAT_DOUBLE, &value) >= 0 ? value : otherwise;
}

bool Mpv::flag(const char* name) const
{
    int value = 0;
    return mpv_get_property(m_mpv.get(), name, MPV_FORMAT_FLAG, &value) >= 0 && value != 0;
}

std::string Mpv::text(const char* name) const
{
    struct Free {
        void operator()(char* text) const { mpv_free(text); }
    };
    const std::unique_ptr<char, Free> text(mpv_get_property_string(m_mpv.get(), name));
    return text != nullptr ? text.get() : "";
}

int Mpv::command(std::initializer_list<const char*> words) const
{
    return mpv_command(m_mpv.get(), terminated(words).data());
}

int Mpv::commandLater(std::initializer_list<const char*> words) const
{
    return mpv_command_async(m_mpv.get(), 0, terminated(words).data());
}

} // namespace desktop
