#include "simulator/scenario.h"

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
              "status": 0, "size": 2147483648
            },
            {
              "name": "nightly.0106", "type": 1, "flags": 0, "saveas": 1,
              "isid": {"version": 1, "dpaid": "simulator", "dpaver": "1.0",
                       "info": "mount=/mnt/nightly.0106|filer1:/vol/home,use_zapi=0"},
              "volume": {"nfs": {"exportHost": "filer1", "exportName": "/vol/home", "exportPath": "/vol/home"}},
              "status": 0, "size": 1073741824
            },
            {
              "name": "nightly.0107", "type": 1, "flags": 0, "saveas": 1,
              "volume": {"nfs": {"exportHost": "filer1", "exportName": "/vol/home", "exportPath": "/vol/home"}},
              "status": 0, "size": 536870912
            },
            {
              "name": "before-cleanup", "type": 2, "flags": 1, "saveas": 1,
              "volume": {"cifs": {"exportHost": "filer1", "shareName": "home$", "exportPath": "/vol/home"}},
              "status": 0, "size": 268435456
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

} // namespace soapwrapper::simulator
