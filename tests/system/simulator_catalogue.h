// A client of the simulator's catalogues, with its requests written by hand.
#ifndef SOAPWRAPPER_TESTS_SYSTEM_SIMULATOR_CATALOGUE_H
#define SOAPWRAPPER_TESTS_SYSTEM_SIMULATOR_CATALOGUE_H

#include "tests/kit/soap_text.h"
#include "tests/system/simulator_process.h"
#include "tests/system/soap_client.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace simulator_catalogue
{

using kit::element;
using kit::nil;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr long kMissingElement = 2060001;
constexpr long kInUse = 2060012;
constexpr long kEndOfList = 2060013;
constexpr long kBadHandle = 2060022;
constexpr long kUnknownLsu = 2069005;
constexpr long kUnknownImage = 2069006;
constexpr long kUnknownSnapshot = 2069007;
constexpr long kUnknownVolume = 2069008;
constexpr long kUnknownExport = 2069009;
constexpr long kBadValue = 2069010;
constexpr long kUnknownCommand = 2069011;

inline std::string server_handle(const std::string& token)
{
    return element("serverHandle", element("token", token));
}

inline std::string lsu(const std::string& token, const std::string& name)
{
    return element("lsu", server_handle(token) + element("lsuName", name));
}

inline std::string snapshot(const std::string& name)
{
    return element("snapDef", element("snapName", name) + element("snapType", "0") +
                                  element("snapFlags", "0") + element("snapSaveas", "0") + nil("isid"));
}

// The content of a volume's element.
inline std::string nfs(const std::string& host, const std::string& name, const std::string& path)
{
    return element("nfs",
                   element("exportHost", host) + element("exportName", name) + element("exportPath", path)) +
           element("volumeType", "0");
}

inline std::string home_volume()
{
    return nfs("filer1", "/vol/home", "");
}

inline std::string hosts(const std::vector<std::string>& names)
{
    std::string items;
    for (const std::string& name : names) items += element("item", name);
    return element("host", element("hostname", items + element("item")) + element("port", element("item")) +
                               element("flags", "0"));
}

// One of the three kinds of lists, by the name in its operations.
struct ListKind {
    std::string list;   // operation that reads it
    std::string close;  // operation that closes it
    std::string handle; // element of its handle
    std::string name;   // element that tells an entry
};

inline const ListKind kLsus{"listLSU", "closeLSUList", "lsuListHandle", "lsu"};
inline const ListKind kImages{"listImage", "closeImageList", "imageListHandle", "basename"};
inline const ListKind kSnapshots{"listSnap", "closeSnapList", "snapListHandle", "snapName"};

class Client : public testing::Test
{
  protected:
    explicit Client(const SimulatorProcess::Arguments& arguments = {}) : simulator_(arguments) {}

    HttpReply ask(const std::string& operation, const std::string& content) const
    {
        return ::ask(simulator_.http_port(), operation, content);
    }
    long fault(const std::string& operation, const std::string& content) const
    {
        return fault_code(ask(operation, content));
    }

    std::string open_server(const std::string& name = "Network_NTAP:filer") const
    {
        const std::string credential =
            element("cred", element("len", "9") + element("type", "1") + element("cert", "c2ltdWxhdG9y"));
        return text_of(
            ask("openServer", nil("sd") + element("server", name) + credential + element("requiredInterface"))
                .body,
            "token");
    }

    // The token of what an operation opens; empty if it fails.
    std::string open(const std::string& operation, const std::string& content) const
    {
        return text_of(ask(operation, content).body, "token");
    }
    static std::string handle(const ListKind& kind, const std::string& token)
    {
        return element(kind.handle, element("token", token));
    }
    HttpReply next(const ListKind& kind, const std::string& token) const
    {
        return ask(kind.list, handle(kind, token));
    }
    // All that is left of a list; whatever ends it stands as the last entry.
    std::vector<std::string> rest(const ListKind& kind, const std::string& token) const
    {
        std::vector<std::string> names;
        for (;;) {
            const HttpReply reply = next(kind, token);
            if (reply.status != 200) {
                names.push_back("fault " + std::to_string(fault_code(reply)));
                return names;
            }
            names.push_back(text_of(reply.body, kind.name));
        }
    }
    // What holds of any list, of one with this token that isn't at its end.
    void expect_a_list_is_closed_once(const ListKind& kind, const std::string& token) const
    {
        EXPECT_EQ(fault_code(next(kind, "0123456789abcdef0123456789abcdef")), kBadHandle);
        EXPECT_EQ(fault(kind.list, nil(kind.handle)), kMissingElement);
        EXPECT_EQ(fault(kind.list, element(kind.handle, nil("token"))), kMissingElement);
        EXPECT_EQ(ask(kind.close, handle(kind, token)).status, 200);
        EXPECT_EQ(fault_code(next(kind, token)), kBadHandle);
        EXPECT_EQ(fault(kind.close, handle(kind, token)), kBadHandle);
    }

    SimulatorProcess simulator_;
};

inline const std::string kEnd = "fault " + std::to_string(kEndOfList);

} // namespace simulator_catalogue

#endif
