// A body on a thread with as much stack as a host may give one, and no more.
#ifndef SOAPWRAPPER_TESTS_KIT_SMALL_STACK_H
#define SOAPWRAPPER_TESTS_KIT_SMALL_STACK_H

#include <gtest/gtest.h>
#include <pthread.h>

#include <cstddef>
#include <functional>

namespace kit
{

inline void run_on_stack_of(std::size_t bytes, const std::function<void()>& body)
{
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, bytes), 0);
    pthread_t thread;
    const auto start = [](void* argument) -> void* {
        (*static_cast<const std::function<void()>*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, start, const_cast<std::function<void()>*>(&body)), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

} // namespace kit

#endif
