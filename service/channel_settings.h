// What soapwrapper.conf says of the channel to the services. Unlike the other settings it is read once, when
// the host calls stspi_init, and without a log line.
#ifndef SOAPWRAPPER_SERVICE_CHANNEL_SETTINGS_H
#define SOAPWRAPPER_SERVICE_CHANNEL_SETTINGS_H

namespace soapwrapper
{

struct ChannelSettings {
    // The key about security whose value can't be followed, or null. While there is one, nothing is sent.
    const char* unusable = nullptr;
    bool require_tls = false;
    // In seconds; 0: none.
    int connect_timeout = 0;
    int reply_timeout = 0;
    bool texts_are_utf8 = false;
};

// No call may be under way.
void read_channel_settings();

const ChannelSettings& channel_settings();

} // namespace soapwrapper

#endif
