# Makes the page and a source that holds it: NODE, CONSOLE and WORK are given.
file(REMOVE_RECURSE "${WORK}/src" "${WORK}/page")
file(COPY "${CONSOLE}/src" "${CONSOLE}/build.mjs" "${CONSOLE}/tsconfig.json" DESTINATION "${WORK}")
execute_process(COMMAND "${NODE}" build.mjs page WORKING_DIRECTORY "${WORK}" RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(FATAL_ERROR
        "The console could not be built; the lines above say why. -DPYL_CONSOLE=OFF builds cimhost without it.")
endif()

set(arrays)
set(rows)
# pyl_embed(PATH FILE TYPE)
macro(pyl_embed path file type)
    file(READ "${WORK}/page/${file}.gz" bytes HEX)
    string(REGEX REPLACE "(..)" "'\\\\x\\1'," bytes "${bytes}")
    string(MAKE_C_IDENTIFIER "${file}" name)
    string(APPEND arrays "constexpr char ${name}[] = {${bytes}};\n")
    file(SHA256 "${WORK}/page/${file}.gz" tag)
    string(APPEND rows "    {\"${path}\", \"${type}; charset=utf-8\", \"${tag}\", {${name}, sizeof ${name}}},\n")
endmacro()
pyl_embed(/ index.html text/html)
pyl_embed(/console.js console.js text/javascript)
pyl_embed(/console.css console.css text/css)

file(WRITE "${WORK}/BuiltConsole.cpp" "#include \"cimhost/server/ConsoleFile.h\"

namespace cimhost {
namespace {

${arrays}
constexpr ConsoleFile files[] = {
${rows}};

}  // namespace

std::span<const ConsoleFile> builtConsole() noexcept { return files; }

}  // namespace cimhost
")
