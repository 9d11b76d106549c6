// What the tests of the long operations have in common: the arguments of a start, handles, the entries by
// their slots, and what requests and replies say.
#ifndef SOAPWRAPPER_TESTS_ENTRIES_ASYNC_FIXTURE_H
#define SOAPWRAPPER_TESTS_ENTRIES_ASYNC_FIXTURE_H

#include "tests/entries/server_fixture.h"
#include "tests/kit/clock.h"
#include "tests/kit/wire_elements.h"

#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

// No entry gives the handle of an operation back.
struct FreeAsync {
    void operator()(stsp_async_t* async) const
    {
        std::free(async->op_token);
        delete async;
    }
};
using AsyncHandle = std::unique_ptr<stsp_async_t, FreeAsync>;

inline AsyncHandle make_async(stsp_server_t* server, std::int32_t pendingflag = 0, const char* token = "op-1")
{
    return AsyncHandle(new stsp_async_t{server, token ? strdup(token) : nullptr, pendingflag});
}

template <std::size_t Size>
void set(char (&field)[Size], std::string_view text)
{
    field[text.copy(field, Size - 1)] = '\0';
}

inline sts_opname_t opname(std::string_view text)
{
    sts_opname_t name{};
    set(name.name, text);
    return name;
}

inline sts_imageset_t imageset(std::string_view text)
{
    sts_imageset_t name{};
    set(name.name, text);
    return name;
}

inline sts_volume_spec_v11_t volume(std::int32_t kind, std::string_view prefix)
{
    sts_volume_spec_v11_t record{};
    set(record.first, std::string(prefix) + "-1");
    set(record.second, std::string(prefix) + "-2");
    set(record.third, std::string(prefix) + "-3");
    record.volumeType = kind;
    return record;
}

inline sts_snap_def_v11_t snapshot(std::string_view name)
{
    sts_snap_def_v11_t record{};
    set(record.snapName, name);
    record.snapType = 11;
    record.snapFlags = 12;
    record.snapSaveas = 13;
    record.isid.version = 14;
    set(record.isid.dpaid, "dpaid");
    set(record.isid.dpaver, "dpaver");
    set(record.isid.info, "abc");
    return record;
}

inline sts_lsu_spec_v11_t lsu_spec(std::string_view server, std::string_view lsu)
{
    sts_lsu_spec_v11_t record{};
    set(record.server, server);
    set(record.lsu, lsu);
    return record;
}

using kit::number;

inline std::string nfs_content(std::string_view prefix)
{
    const std::string text(prefix);
    return kit::element("nfs", kit::element("exportHost", text + "-1") +
                                   kit::element("exportName", text + "-2") +
                                   kit::element("exportPath", text + "-3")) +
           number("volumeType", 0);
}

inline std::string snapshot_element(std::string_view element_name, std::string_view name)
{
    return kit::element(element_name,
                        kit::element("snapName", name) + number("snapType", 11) + number("snapFlags", 12) +
                            number("snapSaveas", 13) +
                            kit::element("isid", number("version", 14) + kit::element("dpaid", "dpaid") +
                                                     kit::element("dpaver", "dpaver") +
                                                     kit::element("info", "YWJj")));
}

inline std::string lsu_spec_content(std::string_view server, std::string_view lsu)
{
    return kit::element("server", server) + kit::element("lsu", lsu);
}

// The entries by their slots.
template <class Entry>
Entry* main_slot(std::size_t slot)
{
    return kit::Host::instance().main_slot<Entry>(slot);
}
template <class Entry>
Entry* snapshot_slot(std::size_t slot)
{
    return kit::Host::instance().snapshot_slot<Entry>(slot);
}

// Takes memory that may not be read: what an entry isn't to touch.
class UnreadablePage
{
  public:
    UnreadablePage();
    ~UnreadablePage();
    UnreadablePage(const UnreadablePage&) = delete;
    UnreadablePage& operator=(const UnreadablePage&) = delete;

    template <class Type>
    Type* as() const
    {
        return static_cast<Type*>(page_);
    }

  private:
    void* page_;
};

#endif
