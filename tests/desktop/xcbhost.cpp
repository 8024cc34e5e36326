// A program that knows nothing of the one that it hosts: it opens an empty window, prints the window's id and
// waits. "resize WIDTH HEIGHT" on standard input resizes the window, the end of standard input destroys it.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <xcb/xcb.h>

namespace {

constexpr char title[] = "Host";

xcb_window_t openWindow(xcb_connection_t *connection)
{
    const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const xcb_window_t window = xcb_generate_id(connection);
    const uint32_t values[] = {screen->white_pixel, XCB_EVENT_MASK_EXPOSURE};
    xcb_create_window(connection, screen->root_depth, window, screen->root, 0, 0, 700, 500, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual,
                      XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);
    const auto cookie = xcb_intern_atom(connection, 0, 12, "_NET_WM_NAME");
    xcb_intern_atom_reply_t *name = xcb_intern_atom_reply(connection, cookie, nullptr);
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, name->atom, XCB_ATOM_STRING, 8,
                        sizeof(title) - 1, title);
    std::free(name);
    xcb_map_window(connection, window);
    xcb_flush(connection);
    return window;
}

void obey(const char *line, xcb_connection_t *connection, xcb_window_t window)
{
    uint32_t size[2] = {};
    if (std::sscanf(line, "resize %u %u", &size[0], &size[1]) == 2)
        xcb_configure_window(connection, window, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size);
    xcb_flush(connection);
}

} // namespace

int main()
{
    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection))
        return 1;
    const xcb_window_t window = openWindow(connection);
    std::printf("%u\n", window);
    std::fflush(stdout);
    char line[100] = {};
    while (std::fgets(line, sizeof(line), stdin))
        obey(line, connection, window);
    xcb_disconnect(connection);
    return 0;
}
