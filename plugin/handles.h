/* What the plug-in hands to the host to hold. The records behind these types are the plug-in's own. */
#ifndef SOAPWRAPPER_PLUGIN_HANDLES_H
#define SOAPWRAPPER_PLUGIN_HANDLES_H

/* An open server session: made by stspi_open_server and stspi_open_target_server, ended by
 * stspi_close_server. Every other handle borrows one and must be closed before it. */
typedef struct stsp_server stsp_server_t;

#endif
