#include "host/remote/web/webstate.h"

#include <nlohmann/json.hpp>

#include <tuple>

namespace {

using Json = nlohmann::ordered_json;

auto fieldsOf(const WebState::Figures &figures)
{
    return std::tie(figures.seconds, figures.runs, figures.laps);
}

auto fieldsOf(const WebState::Due &due)
{
    return std::tie(due.carId, due.car, due.model, due.opId, due.op, due.localId, due.isOpen, due.since,
                    due.comment, due.driven, due.limits);
}

auto fieldsOf(const WebState::Record &record)
{
    return std::tie(record.id, record.key, record.carId, record.car, record.opId, record.op, record.doneTime,
                    record.person, record.comment, record.localId, record.state);
}

auto fieldsOf(const WebState::Kart &kart)
{
    return std::tie(kart.id, kart.number, kart.model, kart.available);
}

Json textOrNull(const std::string &text)
{
    return text.empty() ? Json(nullptr) : Json(text);
}

Json figuresOrNull(const std::optional<WebState::Figures> &figures)
{
    if (!figures)
        return nullptr;
    return {{"seconds", figures->seconds}, {"runs", figures->runs}, {"laps", figures->laps}};
}

const char *kindOf(const WebState::Due &due)
{
    if (due.opId < 0)
        return "complaint";
    return due.isOpen ? "open" : "due";
}

Json jsonOf(const WebState::Due &due)
{
    return {{"car_id", due.carId},
            {"car", due.car},
            {"model", due.model},
            {"op_id", due.opId},
            {"op", due.op},
            {"local_id", due.localId},
            {"kind", kindOf(due)},
            {"since", textOrNull(due.since)},
            {"comment", due.comment},
            {"driven", figuresOrNull(due.driven)},
            {"limits", figuresOrNull(due.limits)}};
}

Json jsonOf(const WebState::Record &record)
{
    return {{"id", record.id},
            {"key", textOrNull(record.key)},
            {"car_id", record.carId},
            {"car", record.car},
            {"op_id", record.opId},
            {"op", record.op},
            {"done_time", record.doneTime},
            {"person", record.person},
            {"comment", record.comment},
            {"local_id", record.localId},
            {"state", record.state}};
}

Json jsonOf(const WebState::Kart &kart)
{
    return {{"id", kart.id}, {"number", kart.number}, {"model", kart.model}, {"available", kart.available}};
}

template<typename Item> Json jsonOf(const std::vector<Item> &items)
{
    Json array = Json::array();
    for (const Item &item : items)
        array.push_back(jsonOf(item));
    return array;
}

} // namespace

bool WebState::Figures::operator==(const Figures &other) const
{
    return fieldsOf(*this) == fieldsOf(other);
}

bool WebState::Due::operator==(const Due &other) const
{
    return fieldsOf(*this) == fieldsOf(other);
}

bool WebState::Record::operator==(const Record &other) const
{
    return fieldsOf(*this) == fieldsOf(other);
}

bool WebState::Kart::operator==(const Kart &other) const
{
    return fieldsOf(*this) == fieldsOf(other);
}

bool WebState::isSame(const WebState &other) const
{
    return due == other.due && records == other.records && karts == other.karts;
}

std::string WebState::toJson(const std::string &epoch, std::uint64_t version) const
{
    const Json json {{"version", version},
                     {"epoch", epoch},
                     {"due", jsonOf(due)},
                     {"records", jsonOf(records)},
                     {"karts", jsonOf(karts)}};
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}
