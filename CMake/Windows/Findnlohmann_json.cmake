# nlohmann's JSON, header-only, for a Windows build.
add_library(nlohmann_json::nlohmann_json INTERFACE IMPORTED)
set_target_properties(nlohmann_json::nlohmann_json PROPERTIES INTERFACE_INCLUDE_DIRECTORIES "${KX_WINDOWS_HEADERS}")
set(nlohmann_json_FOUND TRUE)
