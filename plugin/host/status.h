/* Statuses: every entry returns one of these, or a number that the storage service made up itself. */
#ifndef SOAPWRAPPER_PLUGIN_HOST_STATUS_H
#define SOAPWRAPPER_PLUGIN_HOST_STATUS_H

enum {
    STS_EOK = 0,                /* the operation succeeded */
    STS_ENULLARG = 2060001,     /* a required pointer is null, or a server name has no colon */
    STS_ENOMEM = 2060002,       /* no memory for what the service sent */
    STS_EBUSY = 2060005,        /* asked to come back later; or a list is being read already */
    STS_EINTERFACE = 2060007,   /* the second plug-in was asked for an interface that it lacks */
    STS_EVERSION = 2060008,     /* the host is too old, or the service offers no usable interface */
    STS_ENOTMINE = 2060009,     /* the server name bears another plug-in's prefix */
    STS_ENOTINIT = 2060010,     /* the second plug-in was called before its start */
    STS_EINUSE = 2060012,       /* the resource is in use; comes from outside */
    STS_ENOENT = 2060013,       /* a file listing has no more entries */
    STS_ESOAPERROR = 2060017,   /* a service call failed without a usable fault */
    STS_ETIMEDOUT = 2060020,    /* the filer stayed busy through all retries */
    STS_EFAULTDETAIL = 2060021, /* the service's fault carries no status */
    STS_EBADARG = 2060022,      /* a handle inside a reference is null or unusable, or a value is invalid */
    STS_ENOSERVICEHANDLE = 2060026, /* the server handle holds no service handle */
    STS_EPLUGIN = 2060046           /* a reply can't be used, or the second connection wouldn't close */
};

#endif
