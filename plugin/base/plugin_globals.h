// What the process has once.
#ifndef SOAPWRAPPER_PLUGIN_BASE_PLUGIN_GLOBALS_H
#define SOAPWRAPPER_PLUGIN_BASE_PLUGIN_GLOBALS_H

#include <pthread.h>

#include <string>

// The path that stspi_init was given; written there only, and read without a lock by any thread.
extern std::string pluginPath;

// Guards gServerEndPointMap and the start of the second plug-in. All zero is a valid mutex, so nobody
// initialises it.
extern pthread_mutex_t gMutex;

namespace soapwrapper
{

// Holds one of the process-wide mutexes for a scope.
class MutexLock
{
  public:
    explicit MutexLock(pthread_mutex_t& mutex) : mutex_(mutex) { pthread_mutex_lock(&mutex_); }
    ~MutexLock() { pthread_mutex_unlock(&mutex_); }
    MutexLock(const MutexLock&) = delete;
    MutexLock& operator=(const MutexLock&) = delete;

  private:
    pthread_mutex_t& mutex_;
};

} // namespace soapwrapper

#endif
