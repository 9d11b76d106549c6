# cmake "-DASSETS=a;b" -DOUTPUT=... -P embed_assets.cmake
# Writes a C++ source that holds the bytes of these files.
set(arrays "")
set(rows "")
set(number 0)
foreach(asset IN LISTS ASSETS)
    file(READ "${asset}" bytes HEX)
    string(REGEX REPLACE "(..)" "0x\\1," bytes "${bytes}")
    get_filename_component(name "${asset}" NAME)
    string(APPEND arrays "const unsigned char kBytes${number}[] = {${bytes}};\n")
    string(APPEND rows "    {\"${name}\", {reinterpret_cast<const char*>(kBytes${number}), sizeof kBytes${number}}},\n")
    math(EXPR number "${number} + 1")
endforeach()
file(WRITE "${OUTPUT}" "#include \"simulator/page/assets.h\"

namespace soapwrapper::simulator
{
namespace
{

${arrays}
} // namespace

std::vector<Asset> page_assets()
{
    return {
${rows}    };
}

} // namespace soapwrapper::simulator
")
