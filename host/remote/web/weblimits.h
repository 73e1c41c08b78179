#pragma once

#include <chrono>
#include <cstddef>

/// What one client, and all clients together, may take of the web server.
struct WebLimits
{
    // One connection.
    std::size_t bodyBytes = 1 << 20;
    std::size_t headBytes = 16 << 10; // request line and headers together
    std::chrono::milliseconds requestTime {10000}; // from the first byte to the last, and for the answer
    std::chrono::milliseconds idleTime {15000}; // between two requests
    int requestsPerConnection = 1000;

    // One address.
    int connectionsPerAddress = 128;
    int wrongCodes = 5; // then the address is locked
    std::chrono::milliseconds lockTime {60000};

    // One session.
    int requestsPerSecond = 20;
    int requestBurst = 100;
    std::chrono::milliseconds sessionTime = std::chrono::hours(12); // since the last request

    // Together.
    int connections = 256; // one thread each
    int streams = 100; // connections that wait for events
    int sessions = 1000;
    int strangers = 10000; // addresses whose wrong codes are remembered
    int unsignedPerSecond = 50; // requests without a session, from one address
    int unsignedBurst = 200;

    std::chrono::milliseconds callTime {3000}; // until the GUI thread has answered
    std::chrono::milliseconds keepAliveTime {15000}; // between two signs of life of a stream
};
