// Replies in which every single value is replaced by what no service should send: the call ends with a
// status, and nothing is written but the record that the entry fills.
#include "tests/entries/catalogue_cases.h"

#include <ostream>
#include <string_view>

using namespace catalogue;
using namespace kit;

namespace
{

struct Range {
    void* begin;
    std::size_t size;
};

template <class Record>
Range range_of(Record& record)
{
    return {&record, sizeof record};
}

struct Reply {
    std::string entry;
    std::string name;
    std::string content;
    std::function<int(Records&)> call;
    std::function<Range(Records&)> filled;
};

std::ostream& operator<<(std::ostream& out, const Reply& reply)
{
    return out << reply.entry;
}

std::string text_and_number(const std::vector<std::string>& texts, const std::vector<std::string>& numbers)
{
    std::string content;
    for (const std::string& name : texts) content += element(name, "text");
    for (const std::string& name : numbers) content += element(name, "1");
    return content;
}

std::string lsu_information()
{
    return element("info",
                   text_and_number({"server"}, {"version", "capacity", "used", "images"}) +
                       element("def", text_and_number({"name", "description", "config", "label"},
                                                      {"alloc", "flags", "maxTransfer", "repSources"})));
}

std::string image()
{
    return text_and_number({"basename", "date", "policy"}, {"version", "saveas", "flags"}) +
           element("isid", element("version", "1") + element("dpaid", "d") + element("info", "bW91bnQ9L2E="));
}

std::string image_information()
{
    return element("info",
                   element("def", image()) +
                       text_and_number({"server", "lsu"}, {"version", "size", "blockSize", "status"}) +
                       element("exports", element("item", element("fstype", "1") + element("mount", "/m"))));
}

std::string snap()
{
    return text_and_number({"snapName"}, {"snapType", "snapFlags", "snapSaveas"});
}

std::string volume(std::string_view name)
{
    return element(name, element("nfs", text_and_number({"exportHost", "exportName", "exportPath"}, {})) +
                             element("volumeType", "0"));
}

std::string partner()
{
    return element("item", text_and_number({"server", "lsu"}, {}));
}

std::vector<Reply> replies()
{
    return {
        {"stspi_list_lsu", "listLSUResponse", element("lsu", "lsu1"),
         [](Records& r) { return list_lsu()(r.list, r.out.name); },
         [](Records& r) { return range_of(r.out.name); }},
        {"stspi_get_lsu_prop_byname_v10", "getLSUPropByNameResponse", lsu_information(),
         [](Records& r) { return get_lsu_prop_byname_v10()(r.lsu, &r.out.older_lsu); },
         [](Records& r) { return range_of(r.out.older_lsu); }},
        {"stspi_get_lsu_prop_byname_v11", "getLSUPropByNameResponse", lsu_information(),
         [](Records& r) { return get_lsu_prop_byname_v11()(r.lsu, &r.out.lsu); },
         [](Records& r) { return range_of(r.out.lsu); }},
        {"stspi_get_lsu_replication_prop", "getLSUReplicationPropResponse",
         element("props", element("source", partner()) + element("target", partner())),
         [](Records& r) {
             return get_lsu_replication_prop()(r.lsu, 1, r.out.partners, 1, r.out.partners + 1);
         },
         [](Records& r) { return range_of(r.out.partners); }},
        {"stspi_list_image", "listImageResponse", element("image", image()),
         [](Records& r) { return list_image()(r.list, &r.out.image); },
         [](Records& r) { return range_of(r.out.image); }},
        {"stspi_get_image_prop", "getImagePropResponse", image_information(),
         [](Records& r) { return get_image_prop()(&r.image, &r.out.image_info); },
         [](Records& r) { return range_of(r.out.image_info); }},
        {"stspi_get_image_prop_byname", "getImagePropByNameResponse", image_information(),
         [](Records& r) { return get_image_prop_byname()(r.lsu, &r.in.image, &r.out.image_info); },
         [](Records& r) { return range_of(r.out.image_info); }},
        {"stspi_list_snap", "listSnapResponse", element("snapDef", snap()),
         [](Records& r) { return list_snap()(r.list, &r.out.snap); },
         [](Records& r) { return range_of(r.out.snap); }},
        {"stspi_get_snap_prop_byname", "getSnapPropByNameResponse",
         element("snapInfo", element("snapDef", snap()) + volume("snapVolSpec") +
                                 text_and_number({"snapServer", "snapLsu"}, {"snapStatus", "snapSize"})),
         [](Records& r) { return get_snap_prop_byname()(r.lsu, &r.in.snap, &r.out.snap_info); },
         [](Records& r) { return range_of(r.out.snap_info); }},
        {"stspi_create_export", "createExportResponse", volume("exportedVolume"),
         [](Records& r) { return create_export()(r.lsu, "n", &r.in.host, &r.out.volume); },
         [](Records& r) { return range_of(r.out.volume); }},
        {"stspi_add_export", "addExportResponse", volume("exportedVolume"),
         [](Records& r) { return add_export()(r.lsu, &r.in.volume, &r.in.host, &r.out.volume); },
         [](Records& r) { return range_of(r.out.volume); }},
        // With a count that isn't 0: the end of a text is written wherever the text ends.
        {"stspi_iocontrol", "ioControlResponse", element("args", "text") + "<ns1:len>4</ns1:len >",
         [](Records& r) { return iocontrol()(r.server, 1, r.out.buffer, 2, 32); },
         [](Records& r) { return range_of(r.out.buffer); }},
    };
}

// What may stand in an element's place.
std::vector<std::string> hostile_forms(const std::string& name)
{
    std::vector<std::string> forms = {"", nil(name), element(name) + element(name, "2"),
                                      element(name, element(name, "nested") + "<x/>"),
                                      "<ns1:" + name + ">unclosed"};
    for (const std::string& value :
         {std::string(), std::string("-1"), std::string("2147483648"), std::string("-9223372036854775809"),
          std::string("99999999999999999999999999"), std::string("1e400"), std::string("NaN"),
          std::string("not a number"), std::string("\xff\xfe\x80"), std::string("&#0;"),
          std::string("&#55296;"), std::string("&unknown;"), std::string("%n%s"), std::string(70000, 'x')}) {
        forms.push_back(element(name, value));
    }
    return forms;
}

// The content with each of its innermost elements in each of those forms.
std::vector<std::string> hostile_contents(const std::string& content)
{
    constexpr std::string_view kOpen = "<ns1:";
    std::vector<std::string> contents;
    for (std::size_t at = content.find(kOpen); at != std::string::npos; at = content.find(kOpen, at + 1)) {
        const std::size_t name_at = at + kOpen.size();
        const std::string name = content.substr(name_at, content.find('>', at) - name_at);
        const std::string close = "</ns1:" + name + ">";
        const std::size_t next_tag = content.find('<', at + 1);
        if (content.compare(next_tag, close.size(), close) != 0) continue;
        for (const std::string& form : hostile_forms(name)) {
            contents.push_back(content.substr(0, at) + form + content.substr(next_tag + close.size()));
        }
    }
    return contents;
}

class HostileReplies : public CatalogueTest, public testing::WithParamInterface<Reply>
{
  protected:
    HostileReplies()
    {
        session->log_callback = nullptr;
        records->server = &server;
        records->lsu = &lsu;
        records->image.server = &server;
        records->list = &list;
    }

    char token[2] = "L";
    stsp_list_t list = {&server, token};
    std::unique_ptr<Records> records = std::make_unique<Records>();
};

std::string entry_of(const testing::TestParamInfo<Reply>& info)
{
    return info.param.entry;
}

INSTANTIATE_TEST_SUITE_P(EveryEntry, HostileReplies, testing::ValuesIn(replies()), entry_of);

} // namespace

TEST_P(HostileReplies, EndWithAStatusAndWriteNothingBeyondTheRecord)
{
    script(GetParam().name, GetParam().content);
    ASSERT_EQ(GetParam().call(*records), 0);
    const auto fresh = std::make_unique<Records>();
    for (const std::string& content : hostile_contents(GetParam().content)) {
        script(GetParam().name, content);
        EXPECT_THAT(GetParam().call(*records), testing::AnyOf(0, STS_ESOAPERROR, STS_EBADARG))
            << content.substr(0, 300);
        const Range filled = GetParam().filled(*records);
        std::memset(filled.begin, kCanary, filled.size);
        EXPECT_TRUE(same_bytes(records->out, fresh->out)) << content.substr(0, 300);
    }
}
