#pragma once

#include <span>
#include <string>

namespace qx9::schema {

struct Column {
    const char* name;
    const char* type;
};

struct Table {
    const char* name;
    std::span<const Column> columns;
};

// The ten tables in their order of creation, each with its columns in declaration order.
// Files written by earlier versions are opened by later ones, so names (mixed spellings
// included) and order never change.
std::span<const Table> tables();

// CREATE TABLE IF NOT EXISTS with every identifier in double quotes.
std::string createStatement(const Table& table);

// The nine tables a full reset drops, in the order it drops them. t_triggerkey is not among
// them: it outlives every reset.
std::span<const char* const> dropOrder();

}  // namespace qx9::schema
