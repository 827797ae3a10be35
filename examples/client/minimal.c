/* minimal.c - the smallest client: a plugin screen with a label and an OK button whose
** CLOSE action ends the program.
** Build: cc minimal.c $(pkg-config --cflags --libs xcontrols) -o minimal */
#include <stdio.h>
#include <X11/Shell.h>
#include <Xm/Form.h>

#include <kx.h>
#include <guibmploader.h>
#include <guimakegcsandfonts.h>
#include <guiscreendef.h>

static int closed = 0;

static int onClose(int32_t jobId, void *hFlag) {
    printf("job %d closed: %d\n", (int)jobId, (int)ObjBooleanGet(hFlag));
    closed = 1;
    return 0;
}

/* A new object of the default pool; the caller owns its one reference. */
static void *newObject(uint32_t tag, const char *signature, uint32_t size) {
    void *h = NULL;
    ObjCreateInternal(&h, size, tag, signature, 0, MemGetDefaultPoolId());
    return h;
}

/* Appends a top-level item holding `data` (whose reference it takes over). */
static ScreenItem *addItem(void *tree, uint32_t type, int32_t id, void *data) {
    ScreenItem *item = newObject(GUI_TAG_SCREEN_ITEM, GUI_SCREEN_ITEM_SIGNATURE, sizeof *item);
    item->itemType = type;
    item->itemId = id;
    item->itemData = data;
    TreeAddRootItem(tree, item, KX_TREE_COOKIE_OBJECT); /* the node takes a reference */
    ScreenItem *kept = item;
    ObjReleaseInternal(&item); /* still alive: the node holds its own reference */
    return kept;
}

int main(int argc, char **argv) {
    XtAppContext app;
    Widget top = XtVaOpenApplication(&app, "Minimal", NULL, 0, &argc, argv, NULL,
                                     sessionShellWidgetClass, NULL);
    Widget form = XmCreateForm(top, "screen", NULL, 0);
    XtManageChild(form);

    GuiInitLoadBmps(top);             /* 1. the display the pictures are read on */
    GuiCreateGcsAndFonts(top);        /* 2. shared GCs, font list and pictures */
    InitPluginScreens(onClose, NULL); /* 3. who is told when a screen closes */

    uint32_t pool = MemGetDefaultPoolId();
    void *tree = NULL;
    TreeCreateFromPool(&tree, 0, pool);

    LabelData *text = newObject(GUI_TAG_LABEL, GUI_LABEL_SIGNATURE, sizeof *text);
    text->text = StrDuplicateIntoPool("Back up now?", pool);
    addItem(tree, Label, 1, text);

    PushButtonData *ok = newObject(GUI_TAG_PUSHBUTTON, GUI_PUSHBUTTON_SIGNATURE, sizeof *ok);
    ok->label = StrDuplicateIntoPool("OK", pool);
    ScreenItem *button = addItem(tree, PushButton, 2, ok);

    static ScreenAttachment below = {ATTACH_ITEM, 0, 1, 10};
    static ScreenAttachment *sides[4] = {NULL, NULL, &below, NULL};
    button->attachments = sides;
    ScreenAction *close = newObject(GUI_TAG_ACTION, GUI_ACTION_SIGNATURE, sizeof *close);
    close->targetId = 2;
    close->kind = ACTION_CLOSE;
    ListCreateFromPool(&button->actions, 0, pool);
    ListPushLastItemInternal(button->actions, &close);

    GuiCreatePlgScreen(form, tree, 42); /* 4. build, lay out and map the items */
    XtRealizeWidget(top);
    while (!closed) XtAppProcessEvent(app, XtIMAll);

    GuiFreeScreenDefAndWidgets(&tree);  /* 5. widgets destroyed, tree released */
    return 0;
}
