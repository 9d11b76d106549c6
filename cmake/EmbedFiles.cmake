# Files that a program carries within itself.
#
#   embed_files(TARGET target FUNCTION page_files FILES FILE...)
#
# gives the target a source in which that function tells the files, by their names without a folder:
# std::vector<EmbeddedFile> page_files(). A header of the target's own declares it. A file that the build makes is named by
# its full path. EmbeddedFile is the simulator's, unless HEADER and NAMESPACE name another.
if(CMAKE_SCRIPT_MODE_FILE)
    set(NUMBER 0)
    foreach(FILE IN LISTS EMBED_FILES)
        file(READ ${FILE} BYTES HEX)
        string(REPEAT "." 64 LINE)
        string(REGEX REPLACE "(${LINE})" "\\1\n    " BYTES "${BYTES}")
        string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," BYTES "${BYTES}")
        # The zero is for the file that has no bytes.
        string(APPEND ARRAYS "const char kBytes${NUMBER}[] = {\n    ${BYTES}'\\0'};\n")
        cmake_path(GET FILE FILENAME NAME)
        string(APPEND ROWS "        {\"${NAME}\", {kBytes${NUMBER}, sizeof kBytes${NUMBER} - 1}},\n")
        math(EXPR NUMBER "${NUMBER} + 1")
    endforeach()
    file(WRITE ${EMBED_SOURCE} "#include \"${EMBED_HEADER}\"

#include <vector>

namespace ${EMBED_NAMESPACE}
{
namespace
{
${ARRAYS}} // namespace

std::vector<EmbeddedFile> ${EMBED_FUNCTION}();
std::vector<EmbeddedFile> ${EMBED_FUNCTION}()
{
    return {
${ROWS}    };
}

} // namespace ${EMBED_NAMESPACE}
")
    return()
endif()

set(EMBED_FILES_SCRIPT ${CMAKE_CURRENT_LIST_FILE})
function(embed_files)
    cmake_parse_arguments(PARSE_ARGV 0 EMBED "" "TARGET;FUNCTION;HEADER;NAMESPACE" "FILES")
    if(NOT EMBED_HEADER)
        set(EMBED_HEADER simulator/front/embedded_file.h)
        set(EMBED_NAMESPACE soapwrapper::simulator)
    endif()
    foreach(FILE IN LISTS EMBED_FILES)
        cmake_path(ABSOLUTE_PATH FILE BASE_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR})
        list(APPEND FILES ${FILE})
    endforeach()
    set(SOURCE ${CMAKE_CURRENT_BINARY_DIR}/embedded_${EMBED_FUNCTION}.cpp)
    add_custom_command(
        OUTPUT ${SOURCE}
        COMMAND ${CMAKE_COMMAND} "-DEMBED_FILES=${FILES}" -DEMBED_SOURCE=${SOURCE} -DEMBED_FUNCTION=${EMBED_FUNCTION}
                -DEMBED_HEADER=${EMBED_HEADER} -DEMBED_NAMESPACE=${EMBED_NAMESPACE} -P ${EMBED_FILES_SCRIPT}
        DEPENDS ${FILES} ${EMBED_FILES_SCRIPT}
        COMMENT "Embedding ${EMBED_FUNCTION}"
        VERBATIM)
    target_sources(${EMBED_TARGET} PRIVATE ${SOURCE})
endfunction()
