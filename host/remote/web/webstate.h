#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// What the page shows. Plain values, so that they can go from thread to thread; texts are UTF-8.
struct WebState
{
    struct Figures
    {
        std::int64_t seconds = 0;
        std::int64_t runs = 0;
        std::int64_t laps = 0;

        bool operator==(const Figures &other) const;
    };

    /// A line of the due list.
    struct Due
    {
        int carId = -1;
        std::string car;
        std::string model;
        int opId = -1; // -1: a complaint
        std::string op;
        int localId = -1;
        bool isOpen = false; // an open record waits to be completed
        std::string since; // UTC, ISO 8601; empty: never
        std::string comment; // of the open record
        std::optional<Figures> driven; // since then
        std::optional<Figures> limits; // 0: none

        bool operator==(const Due &other) const;
    };

    struct Record
    {
        int id = -1;
        std::string key; // empty: not made by a page
        int carId = -1;
        std::string car;
        int opId = -1;
        std::string op;
        std::string doneTime; // UTC, ISO 8601
        std::string person;
        std::string comment;
        int localId = -1; // the record of the track that it completed; -1: none
        std::string state; // "waiting", "sent", "archived", "deleted"

        bool operator==(const Record &other) const;
    };

    struct Kart
    {
        int id = -1;
        std::string number;
        std::string model;
        bool available = false;

        bool operator==(const Kart &other) const;
    };

    std::vector<Due> due;
    std::vector<Record> records; // latest first
    std::vector<Kart> karts;

    bool isSame(const WebState &other) const;
    /// One line, an object. Bytes that are not UTF-8 become replacement characters.
    std::string toJson(const std::string &epoch, std::uint64_t version) const;
};
