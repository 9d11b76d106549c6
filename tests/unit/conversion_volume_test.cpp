#include "conversion/volume.h"
#include "tests/unit/canary.h"

#include <gmock/gmock.h>

#include <string>

#include "soapwrapperStub.h"

using namespace soapwrapper;

namespace
{

sts_volume_spec_v11_t host_volume(int type)
{
    sts_volume_spec_v11_t volume;
    fill_with_canary(volume);
    put(volume.first, "one");
    put(volume.second, "two");
    put(volume.third, "three");
    volume.volumeType = type;
    return volume;
}

// A wire volume with an object of each kind at hand.
struct Wire {
    ns1__NFSVolumeSpecification nfs;
    ns1__CIFSVolumeSpecification cifs;
    ns1__SCSIVolumeSpecification scsi;
    ns1__DeviceVolumeSpecification device;
    ns1__NDMPVolumeSpecification ndmp;
    ns1__VolumeSpecification volume;

    void set(const sts_volume_spec_v11_t& host)
    {
        volume.union_VolumeSpecification.device = &device;
        set_volume_spec_from_sts(volume, &nfs, &cifs, &scsi, &ndmp, &host);
    }

    std::string texts() const
    {
        return nfs.exportHost + nfs.exportName + nfs.exportPath + cifs.exportHost + cifs.shareName +
               cifs.exportPath + scsi.lunWWNN + scsi.lunSerial + device.devicePath + ndmp.exportfiler +
               ndmp.exportpath;
    }
};

// The record that a wire volume leaves in one full of canaries.
sts_volume_spec_v11_t read_back(const ns1__VolumeSpecification& wire)
{
    sts_volume_spec_v11_t record;
    fill_with_canary(record);
    set_volume_spec_from_soap(record, &wire);
    return record;
}

sts_volume_spec_v11_t expected_record(int type, std::string_view first, std::string_view second)
{
    sts_volume_spec_v11_t record;
    fill_with_canary(record);
    put(record.first, first);
    put(record.second, second);
    record.volumeType = type;
    return record;
}

sts_volume_spec_v11_t untouched()
{
    sts_volume_spec_v11_t record;
    fill_with_canary(record);
    return record;
}

} // namespace

TEST(VolumeFromTheHost, OfTypeNfsFillsTheNfsObject)
{
    Wire wire;
    wire.set(host_volume(STS_VOLUME_NFS));
    EXPECT_EQ(wire.volume.volumeType, 0);
    EXPECT_EQ(wire.volume.__union_VolumeSpecification, 1);
    EXPECT_EQ(wire.volume.union_VolumeSpecification.nfs, &wire.nfs);
    EXPECT_EQ(wire.nfs.exportHost, "one");
    EXPECT_EQ(wire.nfs.exportName, "two");
    EXPECT_EQ(wire.nfs.exportPath, "three");
    EXPECT_EQ(wire.texts(), "onetwothree");
}

TEST(VolumeFromTheHost, OfTypeCifsFillsTheCifsObject)
{
    Wire wire;
    wire.set(host_volume(STS_VOLUME_CIFS));
    EXPECT_EQ(wire.volume.volumeType, 1);
    EXPECT_EQ(wire.volume.__union_VolumeSpecification, 2);
    EXPECT_EQ(wire.volume.union_VolumeSpecification.cifs, &wire.cifs);
    EXPECT_EQ(wire.cifs.exportHost, "one");
    EXPECT_EQ(wire.cifs.shareName, "two");
    EXPECT_EQ(wire.cifs.exportPath, "three");
    EXPECT_EQ(wire.texts(), "onetwothree");
}

TEST(VolumeFromTheHost, OfTypeScsiFillsTheScsiObjectWithTwoTexts)
{
    Wire wire;
    wire.set(host_volume(STS_VOLUME_SCSI));
    EXPECT_EQ(wire.volume.volumeType, 2);
    EXPECT_EQ(wire.volume.__union_VolumeSpecification, 3);
    EXPECT_EQ(wire.volume.union_VolumeSpecification.scsi, &wire.scsi);
    EXPECT_EQ(wire.scsi.lunWWNN, "one");
    EXPECT_EQ(wire.scsi.lunSerial, "two");
    EXPECT_EQ(wire.texts(), "onetwo");
}

TEST(VolumeFromTheHost, OfTypeDeviceWritesThroughTheUnionsPointer)
{
    Wire wire;
    wire.set(host_volume(STS_VOLUME_DEVICE));
    EXPECT_EQ(wire.volume.volumeType, 3);
    EXPECT_EQ(wire.volume.__union_VolumeSpecification, 4);
    EXPECT_EQ(wire.volume.union_VolumeSpecification.device, &wire.device);
    EXPECT_EQ(wire.texts(), "one");
}

TEST(VolumeFromTheHost, OfTypeDeviceWithNoObjectAtHandWritesNoText)
{
    ns1__VolumeSpecification volume;
    volume.union_VolumeSpecification.device = nullptr;
    const sts_volume_spec_v11_t host = host_volume(STS_VOLUME_DEVICE);
    set_volume_spec_from_sts(volume, nullptr, nullptr, nullptr, nullptr, &host);
    EXPECT_EQ(volume.volumeType, 3);
    EXPECT_EQ(volume.__union_VolumeSpecification, 4);
    EXPECT_EQ(volume.union_VolumeSpecification.device, nullptr);
}

TEST(VolumeFromTheHost, OfTypeNdmpFillsTheNdmpObjectWithTwoTexts)
{
    Wire wire;
    wire.set(host_volume(STS_VOLUME_NDMP));
    EXPECT_EQ(wire.volume.volumeType, 4);
    EXPECT_EQ(wire.volume.__union_VolumeSpecification, 5);
    EXPECT_EQ(wire.volume.union_VolumeSpecification.ndmp, &wire.ndmp);
    EXPECT_EQ(wire.ndmp.exportfiler, "one");
    EXPECT_EQ(wire.ndmp.exportpath, "two");
    EXPECT_EQ(wire.texts(), "onetwo");
}

TEST(VolumeFromTheHost, OfAnyOtherTypeSetsTheTypeAlone)
{
    for (const int type : {-1, 5, 2000000000}) {
        Wire wire;
        wire.set(host_volume(type));
        EXPECT_EQ(wire.volume.volumeType, type);
        EXPECT_EQ(wire.volume.__union_VolumeSpecification, 0);
        EXPECT_EQ(wire.volume.union_VolumeSpecification.device, &wire.device);
        EXPECT_EQ(wire.texts(), "");
    }
}

TEST(VolumeFromTheHost, EndsATextWithoutATerminatorAtItsBound)
{
    sts_volume_spec_v11_t host;
    fill_with_canary(host);
    host.volumeType = STS_VOLUME_NFS;
    Wire wire;
    wire.set(host);
    EXPECT_EQ(wire.nfs.exportHost.size(), 1024u);
    EXPECT_EQ(wire.nfs.exportName.size(), 1024u);
    EXPECT_EQ(wire.nfs.exportPath.size(), 1024u);
}

TEST(VolumeFromTheService, ComesBackWithTwoTextsAndLosesTheThird)
{
    for (const int type : {STS_VOLUME_NFS, STS_VOLUME_CIFS, STS_VOLUME_SCSI, STS_VOLUME_NDMP}) {
        Wire wire;
        wire.set(host_volume(type));
        wire.volume.volumeType = 99; // never read
        EXPECT_TRUE(same_bytes(read_back(wire.volume), expected_record(type, "one", "two"))) << type;
    }
}

TEST(VolumeFromTheService, OfADeviceLeavesTheWholeRecord)
{
    Wire wire;
    wire.set(host_volume(STS_VOLUME_DEVICE));
    EXPECT_TRUE(same_bytes(read_back(wire.volume), untouched()));
}

TEST(VolumeFromTheService, WithoutAKnownChoiceLeavesTheWholeRecord)
{
    for (const int choice : {0, 6, -1}) {
        Wire wire;
        wire.set(host_volume(STS_VOLUME_NFS));
        wire.volume.__union_VolumeSpecification = choice;
        EXPECT_TRUE(same_bytes(read_back(wire.volume), untouched())) << choice;
    }
}

TEST(VolumeFromTheService, WithANilChoiceOrNoneAtAllLeavesTheWholeRecord)
{
    for (const int choice : {1, 2, 3, 4, 5}) {
        ns1__VolumeSpecification wire;
        wire.__union_VolumeSpecification = choice;
        wire.union_VolumeSpecification.nfs = nullptr;
        EXPECT_TRUE(same_bytes(read_back(wire), untouched())) << choice;
    }
    sts_volume_spec_v11_t record = untouched();
    set_volume_spec_from_soap(record, nullptr);
    EXPECT_TRUE(same_bytes(record, untouched()));
}

TEST(VolumeFromTheService, CutsBothTextsAtTheirBounds)
{
    for (const std::size_t length : {1023u, 1024u, 3000u}) {
        Wire wire;
        wire.set(host_volume(STS_VOLUME_SCSI));
        wire.scsi.lunWWNN = long_text(length);
        wire.scsi.lunSerial = long_text(length);
        EXPECT_TRUE(same_bytes(read_back(wire.volume),
                               expected_record(STS_VOLUME_SCSI, long_text(1023), long_text(1023))))
            << length;
    }
}

TEST(VolumeArray, SendsNfsVolumesAndEmptiesOfEveryOtherKind)
{
    const sts_volume_spec_v11_t volumes[] = {host_volume(STS_VOLUME_NFS), host_volume(STS_VOLUME_CIFS),
                                             host_volume(STS_VOLUME_DEVICE)};
    ns1__ArrayOfVolumeSpecification wire;
    set_volume_spec_array_from_sts(wire, volumes, 3);
    ASSERT_EQ(wire.item.size(), 3u);
    EXPECT_EQ(wire.item[0]->volumeType, 0);
    EXPECT_EQ(wire.item[0]->__union_VolumeSpecification, 1);
    EXPECT_EQ(wire.item[0]->union_VolumeSpecification.nfs->exportPath, "three");
    for (const std::size_t i : {1u, 2u}) {
        EXPECT_EQ(wire.item[i]->volumeType, 0);
        EXPECT_EQ(wire.item[i]->__union_VolumeSpecification, 0);
        EXPECT_EQ(wire.item[i]->union_VolumeSpecification.cifs, nullptr);
    }
    cleanup_volume_spec_array(wire);
    EXPECT_THAT(wire.item, testing::IsEmpty());
}

TEST(VolumeArray, OfCountZeroIsLeftAlone)
{
    ns1__ArrayOfVolumeSpecification wire;
    set_volume_spec_array_from_sts(wire, nullptr, 0);
    EXPECT_THAT(wire.item, testing::IsEmpty());
    cleanup_volume_spec_array(wire);
    EXPECT_THAT(wire.item, testing::IsEmpty());
}

TEST(VolumeArray, CleanupFreesEveryKindButADevice)
{
    ns1__DeviceVolumeSpecification device; // on the stack: deleting it would end the test
    ns1__ArrayOfVolumeSpecification wire;
    for (const int choice : {1, 2, 3, 4, 5, 1}) {
        auto* item = new ns1__VolumeSpecification();
        item->__union_VolumeSpecification = choice;
        auto& kind = item->union_VolumeSpecification;
        switch (choice) {
        case 1:
            kind.nfs = wire.item.empty() ? new ns1__NFSVolumeSpecification() : nullptr;
            break;
        case 2:
            kind.cifs = new ns1__CIFSVolumeSpecification();
            break;
        case 3:
            kind.scsi = new ns1__SCSIVolumeSpecification();
            break;
        case 4:
            kind.device = &device;
            break;
        default:
            kind.ndmp = new ns1__NDMPVolumeSpecification();
            break;
        }
        wire.item.push_back(item);
    }
    wire.item.push_back(nullptr);
    cleanup_volume_spec_array(wire);
    EXPECT_THAT(wire.item, testing::IsEmpty());
    EXPECT_EQ(device.devicePath, "");
}
