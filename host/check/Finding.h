#pragma once

#include <QString>

#include <vector>

namespace pdeprint {

// One line of the administrator's check: what is fine, what may cost codes,
// and what does cost them (with the change that fixes it).
struct Finding
{
    enum class Level { Ok, Warning, Problem };
    Level level;
    QString subject; // a queue's name, or "server"
    QString text;
};
using Findings = std::vector<Finding>;

} // namespace pdeprint
