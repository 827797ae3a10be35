/* guiscreenbatch.cpp - the build batch: widgets of a screen being built are queued and
** managed after the layout pass, one XtManageChildren per parent. */
#include <algorithm>
#include <utility>

#include "guiscreenitem.h"

namespace xc::screen {
namespace {

/* The queue of the outermost batch open, or null outside a build. */
PoolVector<Widget> *gPending = nullptr;

/* Manages one batch of children of one parent. A realized parent lays the batch out at
** once, at the sizes the children have then; a container that was never realized has
** not laid out its own children yet and has no size (Xt lays it out only when it
** realizes it, after the parent has placed it). Realizing such containers first, while
** still unmanaged, gives them their size before the parent places them. */
void manageBatch(PoolVector<Widget> &batch) {
    if (XtIsRealized(XtParent(batch.front())))
        for (Widget w : batch)
            if (XtIsComposite(w) && !XtIsRealized(w)) XtRealizeWidget(w);
    XtManageChildren(batch.data(), static_cast<Cardinal>(batch.size()));
}

/* Manages the queued widgets: one XtManageChildren per parent, parents in the reverse
** order of their first appearance, so inner containers are complete before the
** container that holds them is managed into a realized form. */
void manageQueued(PoolVector<Widget> &queued) {
    PoolVector<std::pair<size_t, Widget>> order; /* (rank of the parent, widget) */
    PoolVector<Widget> parents;
    order.reserve(queued.size());
    for (Widget w : queued) {
        auto it = std::find(parents.rbegin(), parents.rend(), XtParent(w));
        size_t rank = it == parents.rend() ? parents.size() : parents.rend() - it - 1;
        if (it == parents.rend()) parents.push_back(XtParent(w));
        order.emplace_back(rank, w);
    }
    std::stable_sort(order.begin(), order.end(),
                     [](const auto &a, const auto &b) { return a.first > b.first; });
    PoolVector<Widget> batch;
    for (size_t i = 0; i < order.size(); ++i) {
        batch.push_back(order[i].second);
        if (i + 1 == order.size() || order[i + 1].first != order[i].first) {
            manageBatch(batch);
            batch.clear();
        }
    }
}

} // namespace

BuildBatch::BuildBatch() {
    if (gPending == nullptr) gPending = &queued_;
}

BuildBatch::~BuildBatch() {
    if (gPending == &queued_) gPending = nullptr;
}

void BuildBatch::finish() {
    if (gPending != &queued_) return; /* an outer batch manages everything */
    gPending = nullptr;
    manageQueued(queued_);
}

void queueManage(Widget w) {
    if (w == nullptr) return;
    if (gPending) gPending->push_back(w);
    else XtManageChild(w);
}

void manageQueuedWithin(Widget container) {
    if (gPending == nullptr) return;
    PoolVector<Widget> inner;
    auto keep = gPending->begin();
    for (Widget w : *gPending) {
        if (w != container && isWithin(w, container)) inner.push_back(w);
        else *keep++ = w;
    }
    gPending->erase(keep, gPending->end());
    if (!inner.empty()) manageQueued(inner);
}

} // namespace xc::screen
