#pragma once
// The page "/journal": the journal newest first, filtered and paged, and the same filter as CSV.

#include "form_query.h"
#include "journal_queries.h"
#include "page_frame.h"

inline constexpr int JournalPageRows = 50;

// The filter and page of a request; a field that cannot be read is left out.
struct JournalRequest {
    JournalFilter filter;
    int page = 1;
    static JournalRequest of(const FormFields &fields);
    FormFields fields(int page) const; // the same filter on another page; 0: no page
};

class JournalPage {
    Q_DECLARE_TR_FUNCTIONS(Web)

public:
    // `rows` holds up to one more row than a page shows: it says an older page exists.
    static QByteArray build(const PageContext &context, const JournalRequest &request,
                            const QStringList &machines, const QList<TransferRow> &rows);
};

// The CSV of a filter: a header line, then one line per row, times in UTC.
class JournalCsv {
public:
    static QByteArray header();
    static QByteArray line(const TransferRow &row);
};
