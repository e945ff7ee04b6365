#pragma once

#include "Report.h"

namespace vormel::bench {

/// One 1 GiB transfer against curl, wget, aria2c and a bare splice(); the same over TLS against curl.
void benchTransfer(Report& report);
void benchTransferTls(Report& report);
/// 2,000 files of 4 KiB, ten at a time, against aria2c.
void benchSmallFiles(Report& report);
/// What a queue of 10,000 items costs.
void benchQueue(Report& report);
/// What sets cost in such a queue, from a command or a change until the window shows it.
void benchGroups(Report& report);
/// What scrolling, keys and ticks cost in the window of such a queue.
void benchScroll(Report& report);
/// What unpacking a set of 1 GiB costs beyond the bare tool.
void benchExtract(Report& report);
/// From process start to the first painted frame, and memory at rest.
void benchWindow(Report& report);
/// What reading hostile pages of services costs, and how that grows with the page.
void benchPages(Report& report);
/// From Start to the bytes of a premium host, and from a container's link to the rows of its files.
void benchPremium(Report& report);
/// From a link to the address of its file by a hidden page, and what memory the engine of the pages takes and keeps.
void benchWalk(Report& report);
/// How well each speed cap of the menu is kept by three transfers.
void benchCap(Report& report);

} // namespace vormel::bench
