# Files that a program carries within itself.
#
#   embed_files(TARGET target NAMESPACE soapwrapper::simulator FILES wsdl_template=FILE style_sheet=FILE...)
#
# makes of each file a source of the target, in which a function of the name that stands before the "=" gives the bytes:
# std::string_view wsdl_template(). A header of the target's own declares it. A file that the build makes is named by its
# full path.
if(CMAKE_SCRIPT_MODE_FILE)
    file(READ ${EMBED_FILE} BYTES HEX)
    string(REPEAT "." 64 LINE)
    string(REGEX REPLACE "(${LINE})" "\\1\n    " BYTES "${BYTES}")
    string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," BYTES "${BYTES}")
    # The zero is for the file that has no bytes.
    file(WRITE ${EMBED_SOURCE} "#include <string_view>

namespace ${EMBED_NAMESPACE}
{
namespace
{
const char kBytes[] = {
    ${BYTES}'\\0'};
} // namespace

std::string_view ${EMBED_FUNCTION}();
std::string_view ${EMBED_FUNCTION}()
{
    return {kBytes, sizeof kBytes - 1};
}

} // namespace ${EMBED_NAMESPACE}
")
    return()
endif()

set(EMBED_FILES_SCRIPT ${CMAKE_CURRENT_LIST_FILE})
function(embed_files)
    cmake_parse_arguments(PARSE_ARGV 0 EMBED "" "TARGET;NAMESPACE" "FILES")
    foreach(ENTRY ${EMBED_FILES})
        if(NOT ENTRY MATCHES "^([a-z_0-9]+)=(.+)$")
            message(FATAL_ERROR "embed_files wants NAME=FILE, and not ${ENTRY}")
        endif()
        set(FUNCTION ${CMAKE_MATCH_1})
        cmake_path(ABSOLUTE_PATH CMAKE_MATCH_2 BASE_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR} OUTPUT_VARIABLE FILE)
        set(SOURCE ${CMAKE_CURRENT_BINARY_DIR}/embedded_${FUNCTION}.cpp)
        add_custom_command(
            OUTPUT ${SOURCE}
            COMMAND ${CMAKE_COMMAND} -DEMBED_FILE=${FILE} -DEMBED_SOURCE=${SOURCE} -DEMBED_FUNCTION=${FUNCTION}
                    -DEMBED_NAMESPACE=${EMBED_NAMESPACE} -P ${EMBED_FILES_SCRIPT}
            DEPENDS ${FILE} ${EMBED_FILES_SCRIPT}
            COMMENT "Embedding ${FILE}"
            VERBATIM)
        target_sources(${EMBED_TARGET} PRIVATE ${SOURCE})
    endforeach()
endfunction()
