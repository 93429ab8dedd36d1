#pragma once
// The page "/": one row per machine, its device, what its station is doing, its last transfer.

#include "journal_queries.h"
#include "page_frame.h"

class MachinesPage {
    Q_DECLARE_TR_FUNCTIONS(Web)

public:
    static QByteArray build(const PageContext &context, const QList<MachineRow> &rows);
};
