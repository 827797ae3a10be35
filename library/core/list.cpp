/* list.cpp - ordered lists of object handles, walkable while callbacks release them. */
#include "kxlist.h"
#include "kxobj.h"
#include "kxprivate.h"

namespace {

/* An element holds one reference on its item; the list holds one on each element. */
struct Element {
    void *item;    /* 'o' */
    Element *next; /* 'p' */
    Element *prev; /* 'p' */
};
constexpr const char *kElementSignature = "o;p;p;";

struct List {
    Element *first; /* 'p' */
    Element *last;  /* 'p' */
    int32_t count;  /* 'i' */
};
constexpr const char *kListSignature = "p;p;i;";

/* The list lets its elements go one by one, so a long list needs no deep recursion. */
void finalizeList(void *data) {
    List *list = static_cast<List *>(data);
    Element *element = list->first;
    list->first = list->last = nullptr;
    list->count = 0;
    while (element != nullptr) {
        Element *next = element->next;
        ObjReleaseInternal(&element);
        element = next;
    }
}

const kx::ObjClass kListClass{finalizeList};
const kx::ObjClass kElementClass{nullptr};

List *asList(void *h) {
    return static_cast<List *>(kx::objectOfClass(h, KX_TAG_LIST, &kListClass));
}

Element *asElement(void *h) {
    return static_cast<Element *>(kx::objectOfClass(h, KX_TAG_LIST_ELEMENT, &kElementClass));
}

/* Appends an element that takes over one reference on `item`. */
bool append(List *list, void *item) {
    Element *element = nullptr;
    if (!kx::createObject(&element, sizeof(Element), KX_TAG_LIST_ELEMENT, kElementSignature,
                          0, kx::objectPool(list), &kElementClass))
        return false;
    element->item = item;
    element->prev = list->last;
    if (list->last != nullptr) list->last->next = element;
    else list->first = element;
    list->last = element;
    list->count++;
    return true;
}

/* Walks from one end to the other; the list and the current element are held during
** each callback, and the next element is read only after it. */
int walk(void *hList, ListWalkFn fn, void *ctx, bool forwards) {
    List *list = asList(hList);
    if (list == nullptr || fn == nullptr) return 1;
    kx::Hold holdList(list);
    Element *element = forwards ? list->first : list->last;
    while (element != nullptr) {
        int goOn;
        {
            kx::Hold holdElement(element);
            goOn = fn(ctx, element);
        }
        if (!goOn) return 0;
        element = forwards ? element->next : element->prev;
    }
    return 1;
}

} // namespace

extern "C" {

int ListCreateFromPool(void *phList, int32_t reserved, uint32_t poolId) {
    return kx::createObject(phList, sizeof(List), KX_TAG_LIST, kListSignature, reserved,
                            poolId, &kListClass);
}

int ListPushLastItemInternal(void *hList, void *phItem) {
    List *list = asList(hList);
    if (list == nullptr || phItem == nullptr) return 0;
    void **slot = static_cast<void **>(phItem);
    /* A live object always has a reference; anything else is no item. */
    if (ObjGetRefCount(*slot) == 0 || !append(list, *slot)) return 0;
    *slot = nullptr;
    return 1;
}

int ListAddLastItem(void *hList, void *hItem) {
    List *list = asList(hList);
    if (list == nullptr || !ObjIncRefCount(hItem)) return 0;
    if (append(list, hItem)) return 1;
    ObjReleaseInternal(&hItem);
    return 0;
}

int ListWalk(void *hList, ListWalkFn fn, void *ctx) {
    return walk(hList, fn, ctx, true);
}

int ListWalkBackwards(void *hList, ListWalkFn fn, void *ctx) {
    return walk(hList, fn, ctx, false);
}

void *ListElementItem(void *hElement) {
    Element *element = asElement(hElement);
    return element ? element->item : nullptr;
}

void *ListFirstItem(void *hList) {
    List *list = asList(hList);
    return list && list->first ? list->first->item : nullptr;
}

void *ListLastItem(void *hList) {
    List *list = asList(hList);
    return list && list->last ? list->last->item : nullptr;
}

int32_t ListCount(void *hList) {
    List *list = asList(hList);
    return list ? list->count : 0;
}

} // extern "C"
