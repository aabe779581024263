/* The flat C interface through which a host application (and the program's own main) creates
   and drives viewer windows and widgets by an opaque handle. */
#ifndef ZELWAVE_H
#define ZELWAVE_H

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
    vx_code_ok = 0,
    vx_code_error = 1,
    vx_code_file_not_found = 2,
    vx_code_parse_failed = 3,
    vx_code_reserved_4 = 4,
    vx_code_bad_parser_index = 5,
    vx_code_bad_name = 6,
    vx_code_bad_selection = 7,
    vx_code_bad_index = 8,
    vx_code_bad_function_arguments = 9,
    vx_code_timeout = 10,
    vx_code_queued = 11,
    vx_code_bad_pointer = 12,
    vx_code_thread_error = 13,
    vx_code_interrupted = 14
} vx_code_type;

/* "OK", "ERROR", ...; "-" for numbers outside 0..14 and for 4. */
const char* convert_vx_return_code_to_string(int code);

typedef enum {
    vx_notification_undefined = 0,
    vx_notification_window_closed = 1,
    vx_notification_close_button_activated = 2,
    vx_notification_attach_button_activated = 3,
    vx_notification_detach_button_activated = 4,
    vx_notification_open_file_button_activated = 5,
    vx_notification_logger_message = 8,
    vx_notification_status_bar_message = 9,
    vx_notification_progress_message = 10,
    vx_notification_file_opened = 11,
    vx_notification_file_closed = 12,
    vx_notification_all_files_closed = 13,
    vx_notification_section_used_for_link_changed = 14
} vx_zelwave_notification_kind;

/* A notification and its payload: two strings and one integer. */
typedef struct {
    long type;
    const char* string1;
    const char* string2;
    long integer;
} _vx_zelwave_callback_notification_type;

typedef void (*vx_zelwave_close_button_function)(void* user_data);
typedef void (*vx_zelwave_curve_function)(void* user_data, const char* section, const char* curve);
typedef void (*vx_zelwave_message_function)(void* user_data, int severity, const char* text);
typedef const char* (*vx_zelwave_drag_string_function)(void* user_data, const char* curves);
typedef int (*vx_zelwave_notification_function)(void* user_data,
                                                const _vx_zelwave_callback_notification_type* notification);

/* Ten machine words, in this order. */
typedef struct {
    void* user_data;
    vx_zelwave_close_button_function close_button;
    vx_zelwave_curve_function curve_highlighted;
    vx_zelwave_curve_function curve_unhighlighted;
    vx_zelwave_curve_function curve_activated;
    vx_zelwave_message_function status_message;
    vx_zelwave_drag_string_function drag_string;
    vx_zelwave_message_function logger_message;
    vx_zelwave_message_function status_bar;
    vx_zelwave_notification_function notification;
} _vx_zelwave_callback_type;

/* Called when the host is to show one of the explorer's panes (browser, page parameters,
   page layout, measurements) in its own side bar. */
typedef void (*vx_zelwave_show_pane_function)(void* user_data, const char* title, void* qt_widget);
typedef struct {
    void* user_data;
    vx_zelwave_show_pane_function show_browser;
    vx_zelwave_show_pane_function show_page_parameters;
    vx_zelwave_show_pane_function show_page_layout;
    vx_zelwave_show_pane_function show_measurements;
} vx_zelwave_qt_callback_type;

/* qt_zelwave_get_widget_info: request codes 1 sidebar, 2 tool bar, 3 tool bar best size,
   6 forward argument as a side bar command, 7 status bar, 8..10 the explorer's three panes. */
typedef struct {
    unsigned request;
    void* argument;
    void* result;
    int result1;
    int result2;
} vx_zelwave_qt_widget_info_type;

typedef void* vx_zelwave_handle;

vx_zelwave_handle qt_zelwave_create_main_window(void* parent, int x, int y, int width, int height, int style);
vx_zelwave_handle qt_zelwave_create_widget(void* parent, int x, int y, int width, int height, int style);
int qt_zelwave_execute_command(vx_zelwave_handle handle, const char* command);
/* Commands in the XML command form (a drop or the clipboard); "*" as plot name becomes plot_name. */
int qt_zelwave_execute_xml_command(vx_zelwave_handle handle, const char* xml, const char* plot_name);
/* Null-terminated, valid until the next call; null for no results or an unknown handle. */
const char** qt_zelwave_get_command_result(vx_zelwave_handle handle);
int qt_zelwave_process_command_line(vx_zelwave_handle handle, const char* text);
int qt_zelwave_register_callback(vx_zelwave_handle handle, const _vx_zelwave_callback_type* callbacks);
int qt_zelwave_register_qt_callback(vx_zelwave_handle handle, const vx_zelwave_qt_callback_type* callbacks);
int qt_zelwave_get_widget_info(vx_zelwave_handle handle, vx_zelwave_qt_widget_info_type* info);

#ifdef __cplusplus
}
#endif

#endif
