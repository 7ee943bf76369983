# spdlog and fmt, header-only, for a Windows build.
add_library(spdlog::spdlog_header_only INTERFACE IMPORTED)
set_target_properties(spdlog::spdlog_header_only PROPERTIES
    INTERFACE_INCLUDE_DIRECTORIES "${KX_WINDOWS_HEADERS}"
    INTERFACE_COMPILE_DEFINITIONS "SPDLOG_FMT_EXTERNAL;FMT_HEADER_ONLY")
set(spdlog_FOUND TRUE)
