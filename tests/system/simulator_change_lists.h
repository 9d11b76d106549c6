// A client that lists what differs between two snapshots, with its requests written by hand.
#ifndef SOAPWRAPPER_TESTS_SYSTEM_SIMULATOR_CHANGE_LISTS_H
#define SOAPWRAPPER_TESTS_SYSTEM_SIMULATOR_CHANGE_LISTS_H

#include "tests/kit/host.h"
#include "tests/system/simulator_catalogue.h"

#include <fstream>

namespace simulator_change_lists
{

using namespace simulator_catalogue;

constexpr long kBusy = 2060005;
constexpr long kUnreadableTree = 2069013;

inline std::string ndmp(const std::string& filer, const std::string& path)
{
    return element("ndmp", element("exportfiler", filer) + element("exportpath", path)) +
           element("volumeType", "4");
}

inline std::string definition(const std::string& name, const std::string& snapshot)
{
    return element(name, element("snapName", snapshot) + element("snapType", "0") +
                             element("snapFlags", "0") + element("snapSaveas", "0") + nil("isid"));
}

// One answer to listFile.
struct Batch {
    std::vector<std::string> names;
    std::vector<std::string> changes;
    std::string count;
    std::string error;
    std::string retry_interval;
};

inline std::vector<std::string> all_of(std::string body, const std::string& name)
{
    std::vector<std::string> texts;
    const std::string end = "</ns1:" + name + ">";
    for (std::size_t at = body.find(end); at != std::string::npos; at = body.find(end)) {
        texts.push_back(text_of(body, name));
        body.erase(0, at + end.size());
    }
    return texts;
}

class Lister : public Client
{
  protected:
    explicit Lister(const SimulatorProcess::Arguments& arguments = {}) : Client(arguments) {}

    std::string request(const std::string& base, const std::string& diff,
                        const std::string& volume = ndmp("filer1", "/vol/projects"),
                        const std::string& on = "projects") const
    {
        return lsu(server_, on) + definition("baseSnapshot", base) + definition("diffSnapshot", diff) +
               element("sourceVolSpec", volume) + element("diffFlag", "0");
    }
    std::string open_changes(const std::string& base, const std::string& diff) const
    {
        return open("openSnapChangeList", request(base, diff));
    }
    static std::string handle(const std::string& token)
    {
        return element("fileListHandle", element("token", token));
    }
    static std::string filtered(const std::string& token, const std::vector<std::string>& filters, int count)
    {
        std::string items;
        for (const std::string& filter : filters) items += element("item", filter);
        return handle(token) + element("filterPathNum", std::to_string(count)) +
               element("filterPathList", items);
    }
    HttpReply list(const std::string& token, const std::vector<std::string>& filters = {}) const
    {
        return ask("listFile", filtered(token, filters, static_cast<int>(filters.size())));
    }
    Batch next(const std::string& token, const std::vector<std::string>& filters = {}) const
    {
        const std::string body = list(token, filters).body;
        return {all_of(body, "name"), all_of(body, "changetype"), text_of(body, "numFiles"),
                text_of(body, "error"), text_of(body, "retryInterval")};
    }
    // All that is left.
    std::vector<std::string> names(const std::string& token,
                                   const std::vector<std::string>& filters = {}) const
    {
        std::vector<std::string> all;
        for (;;) {
            const Batch batch = next(token, filters);
            if (batch.names.empty()) return all;
            all.insert(all.end(), batch.names.begin(), batch.names.end());
        }
    }

    const std::string server_ = open_server();
};

// A scenario of one LSU with the two snapshots "a" and "b", of which "b" has `files` more.
class ScenarioFile
{
  public:
    explicit ScenarioFile(const std::string& settings, int files = 5)
    {
        std::string more;
        for (int i = 0; i < files; ++i) {
            more += std::string(i == 0 ? "" : ",") + R"({"path": "file)" + std::to_string(i) + R"("})";
        }
        write(settings, R"("files": [])", R"("files": [)" + more + "]");
    }
    // With these members for what the two hold.
    ScenarioFile(const std::string& settings, const std::string& a, const std::string& b)
    {
        write(settings, a, b);
    }

    std::string path() const { return (folder_.path() / "scenario.json").string(); }
    std::filesystem::path operator/(const std::string& name) const { return folder_.path() / name; }

  private:
    static std::string snapshot(const std::string& name, const std::string& content)
    {
        return R"({"name": ")" + name + R"(", "volume": {"ndmp": {"exportfiler": "filer1", "exportpath": )" +
               R"("/vol/data/.snapshot/)" + name + R"("}}, )" + content + "}";
    }
    void write(const std::string& settings, const std::string& a, const std::string& b) const
    {
        std::ofstream(path()) << R"({"changeLists": )" << settings
                              << R"(, "servers": [{"prefix": "Network_NTAP", "lsus": [{"name": "data",)"
                              << R"( "volumes": [{"ndmp": {"exportfiler": "filer1", )"
                              << R"("exportpath": "/vol/data"}}, {"nfs": {"exportHost": "filer1", )"
                              << R"("exportName": "/vol/data", "exportPath": ""}}], "snapshots": [)"
                              << snapshot("a", a) << "," << snapshot("b", b) << "]}]}]}";
    }

    kit::TemporaryFolder folder_;
};

// Lists what "b" has more than "a".
class ScenarioLister : private ScenarioFile, public Lister
{
  protected:
    template <class... Content>
    explicit ScenarioLister(const Content&... content)
        : ScenarioFile(content...), Lister({"--scenario", ScenarioFile::path()})
    {
    }

    std::string pair() const { return request("a", "b", ndmp("filer1", "/vol/data"), "data"); }
    std::string open_pair() const { return open("openSnapChangeList", pair()); }
    std::filesystem::path place(const std::string& name) const { return ScenarioFile::operator/(name); }
};

} // namespace simulator_change_lists

#endif
