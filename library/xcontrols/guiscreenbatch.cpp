/* guiscreenbatch.cpp - the build batch: widgets of a screen being built are queued and
** managed after the layout pass, one XtManageChildren per parent. */
#include <X11/IntrinsicP.h>
#include <X11/CompositeP.h>

#include <algorithm>
#include <functional>

#include "guiscreenitem.h"

namespace xc::screen {
namespace {

/* The queue of the outermost batch open, or null outside a build. */
BuildBatch *gOpen = nullptr;

/* Manages one batch of children of one parent. A realized parent lays the batch out at
** once, at the sizes the children have then; a container that was never realized has
** not laid out its own children yet and has no size (Xt lays it out only when it
** realizes it, after the parent has placed it). Realizing such containers first, while
** still unmanaged, gives them their size before the parent places them. */
void manageBatch(PoolVector<Widget> &batch) {
    if (batch.empty()) return;
    if (XtIsRealized(XtParent(batch.front())))
        for (Widget w : batch)
            if (XtIsComposite(w) && !XtIsRealized(w)) XtRealizeWidget(w);
    XtManageChildren(batch.data(), static_cast<Cardinal>(batch.size()));
    batch.clear();
}

} // namespace

BuildBatch::BuildBatch() {
    if (gOpen == nullptr) gOpen = this;
}

BuildBatch::~BuildBatch() {
    if (gOpen == this) gOpen = nullptr;
}

/* Parents in the reverse order of their first appearance: inner containers are complete
** before the container that holds them is managed into a realized form. */
void BuildBatch::finish() {
    if (gOpen != this) return; /* an outer batch manages everything */
    gOpen = nullptr;
    for (auto it = parents_.rbegin(); it != parents_.rend(); ++it) manageBatch(it->children);
}

/* A builder queues its widgets into one parent after another, so the parent of the
** last widget queued is tried before the map. */
void BuildBatch::queue(Widget w) {
    Widget parent = XtParent(w);
    if (parents_.empty() || parents_[lastRank_].parent != parent) {
        auto [slot, added] = rankOf_.try_emplace(parent, parents_.size());
        if (added) parents_.push_back({parent, {}});
        lastRank_ = slot->second;
    }
    parents_[lastRank_].children.push_back(w);
}

/* Collects the ranks of the parents within `w` that have queued children, by a walk of
** the widget tree below `w`: its cost is the size of that subtree, whatever the size of
** the batch. */
void BuildBatch::ranksWithin(Widget w, PoolVector<size_t> &ranks) const {
    if (!XtIsComposite(w)) return;
    auto found = rankOf_.find(w);
    if (found != rankOf_.end() && !parents_[found->second].children.empty()) ranks.push_back(found->second);
    auto *composite = reinterpret_cast<CompositeWidget>(w);
    for (Cardinal i = 0; i < composite->composite.num_children; ++i)
        ranksWithin(composite->composite.children[i], ranks);
}

void BuildBatch::manageWithin(Widget container) {
    PoolVector<size_t> ranks;
    ranksWithin(container, ranks);
    std::sort(ranks.begin(), ranks.end(), std::greater<size_t>());
    for (size_t rank : ranks) manageBatch(parents_[rank].children);
}

void queueManage(Widget w) {
    if (w == nullptr) return;
    if (gOpen) gOpen->queue(w);
    else XtManageChild(w);
}

void manageQueuedWithin(Widget container) {
    if (gOpen) gOpen->manageWithin(container);
}

} // namespace xc::screen
