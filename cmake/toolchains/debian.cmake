# Debian's cross compiler for ${triplet}. Its libraries stand beside the native ones, so what it builds runs under
# ${emulator} as if it were native.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_CXX_COMPILER ${triplet}-g++)
set(CMAKE_LIBRARY_ARCHITECTURE ${triplet})
set(CMAKE_CROSSCOMPILING_EMULATOR /usr/bin/${emulator})
# Notes about compilers older than any that the libraries here were built with.
add_compile_options(-Wno-psabi)
set(ENV{PKG_CONFIG_LIBDIR} /usr/lib/${triplet}/pkgconfig:/usr/share/pkgconfig)
