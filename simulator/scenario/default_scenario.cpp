#include "simulator/scenario/default_scenario.h"

#include "simulator/scenario/scenario.h"
#include "simulator/scenario/scenario_reader.h"

#include <string_view>

namespace soapwrapper::simulator
{

std::string_view default_scenario_text()
{
    static constexpr char kText[] = R"json({
  "servers": [
    {
      "prefix": "Network_NTAP",
      "types": ["Network_NTAP"],
      "capabilities": [0, 1, 2, 3, 5, 8, 32, 33],
      "flags": 0,
      "maxSessions": 1024,
      "lsus": [
        {
          "name": "home",
          "label": "Home directories",
          "description": "Home directories, over NFS and CIFS",
          "config": "aggregate=aggr1,raid=dp",
          "alloc": 1, "storage": 2, "flags": 3, "saveas": 1,
          "maxTransfer": 1048576, "blockSize": 4096, "allocSize": 65536,
          "capacity": 1099511627776, "capacityPhys": 549755813888,
          "used": 418759311360, "usedPhys": 209379655680,
          "replicationTargets": [
            {"server": "Network_VAULT", "lsu": "vault_home"},
            {"server": "Network_VAULT", "lsu": "vault_far"}
          ],
          "volumes": [
            {"nfs": {"exportHost": "filer1", "exportName": "/vol/home", "exportPath": "/vol/home"}},
            {"cifs": {"exportHost": "filer1", "shareName": "home$", "exportPath": "/vol/home"}}
          ],
          "files": [
            {"path": "alice", "type": "directory", "modified": 1767744000, "owner": 1001, "inode": 64},
            {"path": "alice/report.odt", "size": 24576, "modified": 1767830400, "owner": 1001, "inode": 65},
            {"path": "bob", "type": "directory", "modified": 1767657600, "owner": 1002, "inode": 96},
            {"path": "bob/photos.tar", "size": 1048576, "modified": 1767657600, "owner": 1002, "inode": 97},
            {"path": "bob/latest", "type": "symlink", "size": 14, "modified": 1767744000, "owner": 1002, "inode": 98}
          ],
          "images": [
            {
              "basename": "home_1767571200_C1_F1",
              "date": "01/05/2026", "fulldate": "01/05/2026 00:00:00",
              "policy": "nightly-home", "saveas": 1, "flags": 0, "format": "snap",
              "isid": {"version": 1, "dpaid": "simulator", "dpaver": "1.0", "info": "use_zapi=0"},
              "size": 214748364800, "blockSize": 4096, "status": 0,
              "exports": [{"fstype": 1, "mount": "/vol/home"}]
            },
            {
              "basename": "home_1767657600_C1_F1",
              "date": "01/06/2026", "fulldate": "01/06/2026 00:00:00",
              "policy": "nightly-home", "saveas": 1, "flags": 0, "format": "snap",
              "size": 10737418240, "blockSize": 4096, "status": 0,
              "exports": [{"fstype": 1, "mount": "/vol/home"}]
            },
            {
              "basename": "home_1767744000_C1_F1",
              "date": "01/07/2026", "fulldate": "01/07/2026 00:00:00",
              "policy": "nightly-home", "saveas": 1, "flags": 0, "format": "snap",
              "size": 12884901888, "blockSize": 4096, "status": 1
            }
          ],
          "snapshots": [
            {
              "name": "nightly.0105", "type": 1, "flags": 0, "saveas": 1,
              "isid": {"version": 1, "dpaid": "simulator", "dpaver": "1.0",
                       "info": "mount=/mnt/nightly.0105|filer1:/vol/home,use_zapi=0"},
              "volume": {"nfs": {"exportHost": "filer1", "exportName": "/vol/home", "exportPath": "/vol/home"}},
              "status": 0, "size": 2147483648,
              "files": [
                {"path": "alice", "type": "directory", "modified": 1767571200, "owner": 1001, "inode": 64},
                {"path": "alice/report.odt", "size": 18432, "modified": 1767571200, "owner": 1001, "inode": 65},
                {"path": "alice/draft.odt", "size": 6144, "modified": 1767571200, "owner": 1001, "inode": 66},
                {"path": "bob", "type": "directory", "modified": 1767571200, "owner": 1002, "inode": 96}
              ]
            },
            {
              "name": "nightly.0106", "type": 1, "flags": 0, "saveas": 1,
              "isid": {"version": 1, "dpaid": "simulator", "dpaver": "1.0",
                       "info": "mount=/mnt/nightly.0106|filer1:/vol/home,use_zapi=0"},
              "volume": {"nfs": {"exportHost": "filer1", "exportName": "/vol/home", "exportPath": "/vol/home"}},
              "status": 0, "size": 1073741824,
              "files": [
                {"path": "alice", "type": "directory", "modified": 1767571200, "owner": 1001, "inode": 64},
                {"path": "alice/report.odt", "size": 20480, "modified": 1767657600, "owner": 1001, "inode": 65},
                {"path": "alice/draft.odt", "size": 6144, "modified": 1767571200, "owner": 1001, "inode": 66},
                {"path": "bob", "type": "directory", "modified": 1767657600, "owner": 1002, "inode": 96},
                {"path": "bob/photos.tar", "size": 1048576, "modified": 1767657600, "owner": 1002, "inode": 97}
              ]
            },
            {
              "name": "nightly.0107", "type": 1, "flags": 0, "saveas": 1,
              "volume": {"nfs": {"exportHost": "filer1", "exportName": "/vol/home", "exportPath": "/vol/home"}},
              "status": 0, "size": 536870912,
              "files": [
                {"path": "alice", "type": "directory", "modified": 1767571200, "owner": 1001, "inode": 64},
                {"path": "alice/report.odt", "size": 20480, "modified": 1767657600, "owner": 1001, "inode": 65},
                {"path": "alice/draft.odt", "size": 6144, "modified": 1767571200, "owner": 1001, "inode": 66},
                {"path": "bob", "type": "directory", "modified": 1767657600, "owner": 1002, "inode": 96},
                {"path": "bob/photos.tar", "size": 1048576, "modified": 1767657600, "owner": 1002, "inode": 97},
                {"path": "bob/latest", "type": "symlink", "size": 14, "modified": 1767744000, "owner": 1002, "inode": 98}
              ]
            },
            {
              "name": "before-cleanup", "type": 2, "flags": 1, "saveas": 1,
              "volume": {"cifs": {"exportHost": "filer1", "shareName": "home$", "exportPath": "/vol/home"}},
              "status": 0, "size": 268435456,
              "files": [
                {"path": "alice", "type": "directory", "modified": 1767571200, "owner": 1001, "inode": 64},
                {"path": "alice/report.odt", "size": 20480, "modified": 1767657600, "owner": 1001, "inode": 65},
                {"path": "alice/draft.odt", "size": 6144, "modified": 1767571200, "owner": 1001, "inode": 66},
                {"path": "bob", "type": "directory", "modified": 1767657600, "owner": 1002, "inode": 96},
                {"path": "bob/photos.tar", "size": 1048576, "modified": 1767657600, "owner": 1002, "inode": 97},
                {"path": "bob/latest", "type": "symlink", "size": 14, "modified": 1767744000, "owner": 1002, "inode": 98}
              ]
            }
          ]
        },
        {
          "name": "database",
          "label": "Database",
          "description": "LUNs of the database",
          "alloc": 1, "storage": 2, "flags": 3, "saveas": 1,
          "maxTransfer": 1048576, "blockSize": 512, "allocSize": 65536,
          "capacity": 274877906944, "capacityPhys": 274877906944,
          "used": 128849018880, "usedPhys": 128849018880,
          "replicationTargets": [{"server": "Network_VAULT", "lsu": "vault_database"}],
          "volumes": [
            {"scsi": {"lunWWNN": "50:0a:09:80:00:00:00:01", "lunSerial": "P3aBcDeFgHiJ"}},
            {"device": {"devicePath": "/dev/mapper/database"}}
          ],
          "images": [
            {
              "basename": "database_1767571200_C1_F1",
              "date": "01/05/2026", "fulldate": "01/05/2026 01:00:00",
              "policy": "nightly-database", "saveas": 1, "flags": 0, "format": "snap",
              "size": 107374182400, "blockSize": 512, "status": 0
            }
          ],
          "snapshots": [
            {
              "name": "log-switch.1", "type": 1, "flags": 0, "saveas": 1,
              "volume": {"scsi": {"lunWWNN": "50:0a:09:80:00:00:00:01", "lunSerial": "P3aBcDeFgHiJ"}},
              "status": 0, "size": 67108864
            },
            {
              "name": "device.1", "type": 1, "flags": 0, "saveas": 1,
              "volume": {"device": {"devicePath": "/dev/mapper/database"}},
              "status": 0, "size": 33554432
            }
          ]
        },
        {
          "name": "archive",
          "label": "",
          "description": "Read by NDMP; replicated nowhere",
          "alloc": 2, "storage": 2, "flags": 0, "saveas": 2,
          "maxTransfer": 262144, "blockSize": 4096, "allocSize": 65536,
          "capacity": 2199023255552, "capacityPhys": 2199023255552,
          "used": 0, "usedPhys": 0,
          "volumes": [{"ndmp": {"exportfiler": "filer1", "exportpath": "/vol/archive"}}],
          "snapshots": [
            {
              "name": "yearly.2025", "type": 1, "flags": 0, "saveas": 2,
              "volume": {"ndmp": {"exportfiler": "filer1", "exportpath": "/vol/archive"}},
              "status": 0, "size": 0
            }
          ]
        },
        {
          "name": "projects",
          "label": "Projects",
          "description": "Read by NDMP, with what differs between its snapshots",
          "alloc": 1, "storage": 2, "flags": 0, "saveas": 1,
          "maxTransfer": 1048576, "blockSize": 4096, "allocSize": 65536,
          "capacity": 549755813888, "capacityPhys": 549755813888,
          "used": 1073741824, "usedPhys": 1073741824,
          "volumes": [
            {"ndmp": {"exportfiler": "filer1", "exportpath": "/vol/projects"}},
            {"nfs": {"exportHost": "filer1", "exportName": "/vol/projects", "exportPath": "/vol/projects"}}
          ],
          "snapshots": [
            {
              "name": "weekly.1", "type": 1, "flags": 0, "saveas": 1,
              "isid": {"version": 1, "dpaid": "simulator", "dpaver": "1.0",
                       "info": "mount=/mnt/projects|filer1:/vol/projects,use_zapi=0"},
              "volume": {"ndmp": {"exportfiler": "filer1", "exportpath": "/vol/projects/.snapshot/weekly.1"}},
              "status": 0, "size": 262144,
              "files": [
                {"path": "bridge", "type": "directory", "size": 4096, "modified": 1767571200, "inode": 64, "permissions": 493},
                {"path": "bridge/plan.dwg", "size": 204800, "modified": 1767571200, "inode": 65},
                {"path": "bridge/costs.ods", "size": 30720, "modified": 1767571200, "inode": 66},
                {"path": "tunnel", "type": "directory", "size": 4096, "modified": 1767571200, "inode": 67, "permissions": 493},
                {"path": "tunnel/survey.txt", "size": 8192, "modified": 1767571200, "inode": 68},
                {"path": "tunnel/old notes.txt", "size": 512, "modified": 1767571200, "inode": 69}
              ]
            },
            {
              "name": "weekly.2", "type": 1, "flags": 0, "saveas": 1,
              "isid": {"version": 1, "dpaid": "simulator", "dpaver": "1.0",
                       "info": "mount=/mnt/projects|filer1:/vol/projects,use_zapi=0"},
              "volume": {"ndmp": {"exportfiler": "filer1", "exportpath": "/vol/projects/.snapshot/weekly.2"}},
              "status": 0, "size": 335872,
              "files": [
                {"path": "bridge", "type": "directory", "size": 4096, "modified": 1768176000, "inode": 64, "permissions": 493},
                {"path": "bridge/plan.dwg", "size": 215040, "modified": 1768176000, "inode": 65},
                {"path": "bridge/costs.ods", "size": 30720, "modified": 1767571200, "inode": 66},
                {"path": "bridge/Längsschnitt.pdf", "size": 65536, "modified": 1768176000, "inode": 70},
                {"path": "tunnel", "type": "directory", "size": 4096, "modified": 1768176000, "inode": 67, "permissions": 493},
                {"path": "tunnel/survey.txt", "size": 8192, "modified": 1767571200, "inode": 68}
              ]
            },
            {
              "name": "weekly.3", "type": 1, "flags": 0, "saveas": 1,
              "isid": {"version": 1, "dpaid": "simulator", "dpaver": "1.0",
                       "info": "use_zapi=0"},
              "volume": {"ndmp": {"exportfiler": "filer1", "exportpath": "/vol/projects/.snapshot/weekly.3"}},
              "status": 0, "size": 348160,
              "files": [
                {"path": "bridge", "type": "directory", "size": 4096, "modified": 1768176000, "inode": 64, "permissions": 493},
                {"path": "bridge/plan.dwg", "size": 215040, "modified": 1768176000, "inode": 65},
                {"path": "bridge/costs.ods", "size": 33792, "modified": 1768780800, "inode": 66},
                {"path": "bridge/Längsschnitt.pdf", "size": 65536, "modified": 1768176000, "inode": 70},
                {"path": "latest", "type": "symlink", "size": 6, "modified": 1768780800, "inode": 72, "permissions": 511},
                {"path": "tunnel", "type": "directory", "size": 4096, "modified": 1768780800, "inode": 67, "permissions": 493},
                {"path": "tunnel/survey.txt", "size": 9216, "modified": 1768780800, "inode": 68},
                {"path": "tunnel/back\\slash.txt", "size": 64, "modified": 1768780800, "inode": 71}
              ]
            }
          ]
        }
      ]
    },
    {
      "prefix": "Network_VAULT",
      "types": ["Network_VAULT"],
      "capabilities": [0, 1, 2, 32],
      "flags": 0,
      "maxSessions": 1024,
      "lsus": [
        {
          "name": "vault_home",
          "label": "Vault of home",
          "description": "Copies of home's snapshots",
          "alloc": 1, "storage": 2, "flags": 3, "saveas": 1,
          "maxTransfer": 1048576, "blockSize": 4096, "allocSize": 65536,
          "capacity": 2199023255552, "capacityPhys": 1099511627776,
          "used": 429496729600, "usedPhys": 214748364800,
          "replicationSources": [{"server": "Network_NTAP", "lsu": "home"}],
          "replicationTargets": [{"server": "Network_VAULT", "lsu": "vault_far"}],
          "volumes": [
            {"nfs": {"exportHost": "vault1", "exportName": "/vol/vault_home", "exportPath": "/vol/vault_home"}}
          ],
          "snapshots": [
            {
              "name": "vault.0105", "type": 3, "flags": 0, "saveas": 1,
              "isid": {"version": 1, "dpaid": "simulator", "dpaver": "1.0",
                       "info": "mount=/mnt/vault.0105|vault1:/vol/vault_home,use_zapi=0"},
              "volume": {"nfs": {"exportHost": "vault1", "exportName": "/vol/vault_home",
                                 "exportPath": "/vol/vault_home"}},
              "status": 0, "size": 2147483648,
              "pathMap": [
                {"prefix": "/vol/vault_home", "originalPath": "/vol/home/qtree1", "targetPath": "/qtree1_copy"},
                {"prefix": "/vol/vault_home", "originalPath": "/qtree2", "targetPath": ""}
              ]
            }
          ]
        },
        {
          "name": "vault_database",
          "label": "Vault of database",
          "alloc": 1, "storage": 2, "flags": 3, "saveas": 1,
          "maxTransfer": 1048576, "blockSize": 512, "allocSize": 65536,
          "capacity": 549755813888, "capacityPhys": 549755813888,
          "used": 0, "usedPhys": 0,
          "replicationSources": [{"server": "Network_NTAP", "lsu": "database"}]
        },
        {
          "name": "vault_far",
          "label": "Second site",
          "alloc": 1, "storage": 2, "flags": 3, "saveas": 1,
          "maxTransfer": 1048576, "blockSize": 4096, "allocSize": 65536,
          "capacity": 2199023255552, "capacityPhys": 2199023255552,
          "used": 0, "usedPhys": 0,
          "replicationSources": [
            {"server": "Network_NTAP", "lsu": "home"},
            {"server": "Network_VAULT", "lsu": "vault_home"}
          ]
        }
      ]
    }
  ]
}
)json";
    return {kText, sizeof kText - 1};
}

Scenario default_scenario()
{
    return parse_scenario(default_scenario_text());
}

} // namespace soapwrapper::simulator
