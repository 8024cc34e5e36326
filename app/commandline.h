#pragma once

#include <QStringList>

/// The 1-based number of the tab to open first, from "--page N"; the last complete "--page" wins.
/// 1 without one, 0 when N is no decimal number; the number is not checked against the tabs.
int pageNumber(const QStringList &arguments);
