/* A small library against the contract, in plain C: the host's tests load it. Well-behaved functions first, then one
 * that breaks the rules on demand. Each entry point tells its name through the error manager. */
#include "contract/host_link.h"

#include <stddef.h>
#include <string.h>

#ifdef _WIN32
#define ENTRY __declspec(dllexport)
#else
#define ENTRY __attribute__((visibility("default")))
#endif

static host_link* link;
static host_object* kept; /* what a misbehaving call leaves behind */

static host_object* make_string(const char* text) { return link->table->string_new(link, text, strlen(text)); }

static void release(host_object* object) { link->table->object_release(link, object); }

static host_value object_value(uint32_t kind, host_object* object)
{
    host_value value;
    memset(&value, 0, sizeof value);
    value.kind = kind;
    value.as.object = object;
    return value;
}

static host_value number_value(uint32_t number)
{
    host_value value = object_value(HOST_UINT32, NULL);
    value.as.u32 = number;
    return value;
}

static host_value output_value(host_value* cell, uint32_t kind)
{
    host_value value = object_value(HOST_OUTPUT, NULL);
    *cell = object_value(kind, NULL);
    value.as.cell = cell;
    return value;
}

static int32_t fail(host_object** error, const char* text)
{
    host_value argument = object_value(HOST_STRING, make_string(text));
    host_value made = object_value(HOST_VOID, NULL);
    host_object* maker = link->table->find_function(link, "Throwable NewThrowableFromString( dm_string )");
    host_object* ignored = NULL;
    if (maker && argument.as.object && link->table->call(link, maker, &argument, 1, &made, &ignored) == 0)
        *error = made.as.object;
    release(ignored);
    release(maker);
    release(argument.as.object);
    return 1;
}

static int32_t call_host(const char* prototype, const host_value* arguments, uint32_t count, host_value* result,
                         host_object** error)
{
    host_object* function = link->table->find_function(link, prototype);
    int32_t failed;
    if (!function) return fail(error, "A host function is missing.");
    failed = link->table->call(link, function, arguments, count, result, error);
    release(function);
    return failed;
}

static int32_t call_lock(host_object* lock, const char* name, const char* prototype, host_object** error)
{
    host_object* name_string = make_string(name);
    host_object* prototype_string = make_string(prototype);
    host_object* method = NULL;
    host_value self = object_value(HOST_SCRIPT_OBJECT, lock);
    int32_t failed = 1;
    if (name_string && prototype_string) method = link->table->find_method(link, lock, name_string, prototype_string);
    if (method)
        failed = link->table->call(link, method, &self, 1, NULL, error);
    else
        fail(error, "A method is missing.");
    release(method);
    release(prototype_string);
    release(name_string);
    return failed;
}

static int32_t lock_memory(host_object* lock, host_object** error)
{
    return call_lock(lock, "LockMemory", "void LockMemory( ScriptObject self )", error);
}

/* The failure of an unlocking is told only where there is none to be told already. */
static int32_t unlock_memory(host_object* lock, host_object** error)
{
    host_object* here = NULL;
    int32_t failed = call_lock(lock, "UnlockMemory", "void UnlockMemory(ScriptObject self)", &here);
    if (!failed) return 0;
    if (*error)
        release(here);
    else
        *error = here;
    return 1;
}

static int32_t new_lock(host_object* image, uint32_t mode, host_object** lock, host_object** error)
{
    host_value arguments[3], result;
    int32_t failed;
    arguments[0] = object_value(HOST_IMAGE, image);
    arguments[1] = number_value(mode);
    arguments[2] = object_value(HOST_SCRIPT_OBJECT, NULL);
    failed =
        call_host("ScriptObject ImageGetLockedData( BasicImage, ulong, ScriptObject )", arguments, 3, &result, error);
    *lock = failed ? NULL : result.as.object;
    return failed;
}

/* Data, sizes and strides of a 2D image of floats. */
static int32_t get_slice(host_object* lock, float** data, int32_t* info, host_object** error)
{
    static const char prototype[] =
        "void *ImageData_GetSlice( ScriptObject img_src, uint32 slice_index, uint32 des_num_dim, uint32 *act_num_dim, "
        "uint32 *data_type, uint32 *pack_style, sint32 *dimension_info...)";
    host_value arguments[10], cells[10], result;
    int i;
    arguments[0] = object_value(HOST_SCRIPT_OBJECT, lock);
    arguments[1] = number_value(0);
    arguments[2] = number_value(2);
    for (i = 3; i < 10; ++i) arguments[i] = output_value(&cells[i], i < 6 ? HOST_UINT32 : HOST_INT32);
    if (call_host(prototype, arguments, 10, &result, error)) return 1;
    *data = (float*)result.as.pointer;
    for (i = 0; i < 4; ++i) info[i] = cells[6 + i].as.i32;
    return 0;
}

/* "long TestDivide( long a, long b, long * rest )" */
static int32_t HOST_CALL test_divide(void* context, const host_value* arguments, uint32_t count, host_value* result,
                                     host_object** error)
{
    const int32_t a = arguments[0].as.i32, b = arguments[1].as.i32;
    (void)context, (void)count;
    if (b == 0) return fail(error, "Division by zero.");
    *result = object_value(HOST_INT32, NULL);
    result->as.i32 = a / b;
    if (arguments[2].as.cell) arguments[2].as.cell->as.i32 = a % b;
    return 0;
}

/* "dm_string TestOverload(double a)" and "dm_string TestOverload(complex a)": the context is the answer */
static int32_t HOST_CALL test_overload(void* context, const host_value* arguments, uint32_t count, host_value* result,
                                       host_object** error)
{
    (void)arguments, (void)count, (void)error;
    *result = object_value(HOST_STRING, make_string((const char*)context));
    return 0;
}

/* "ImageRef TestFill( ImageRef img, float value )": fills a 2D image of floats and returns it */
static int32_t HOST_CALL test_fill(void* context, const host_value* arguments, uint32_t count, host_value* result,
                                   host_object** error)
{
    host_object* lock;
    float* data;
    int32_t info[4], x, y, failed;
    (void)context, (void)count;
    if (new_lock(arguments[0].as.object, HOST_LOCK_WRITE, &lock, error)) return 1;
    if (lock_memory(lock, error)) return release(lock), 1;
    failed = get_slice(lock, &data, info, error);
    if (!failed) {
        for (y = 0; y < info[2]; ++y)
            for (x = 0; x < info[0]; ++x) data[x * (ptrdiff_t)info[1] + y * (ptrdiff_t)info[3]] = arguments[1].as.f32;
        failed = call_host("void ImageDataChanged( ImageRef )", arguments, 1, NULL, error);
    }
    failed |= unlock_memory(lock, error);
    release(lock);
    if (failed) return 1;
    *result = arguments[0];
    link->table->object_add_reference(link, result->as.object);
    return 0;
}

/* "void TestMisbehave( ImageRef img, string how, double * output )": breaks the rule that `how` names */
static int32_t HOST_CALL test_misbehave(void* context, const host_value* arguments, uint32_t count, host_value* result,
                                        host_object** error)
{
    const char* how = link->table->string_text(link, arguments[1].as.object, NULL);
    host_object* string = make_string("text");
    host_object* lock = NULL;
    host_value wrong = object_value(HOST_STRING, string);
    float* data;
    int32_t info[4], failed = 0;
    (void)context, (void)count;
    *result = object_value(HOST_VOID, NULL);
    if (new_lock(arguments[0].as.object, HOST_LOCK_READ, &lock, error)) return release(string), 1;
    if (!strcmp(how, "release twice")) release(string);
    if (!strcmp(how, "use after release")) release(string), link->table->string_text(link, string, NULL), string = NULL;
    if (!strcmp(how, "foreign pointer")) link->table->object_add_reference(link, (host_object*)&wrong);
    if (!strcmp(how, "release lent")) release(arguments[0].as.object);
    if (!strcmp(how, "unlocked access")) failed = get_slice(lock, &data, info, error);
    if (!strcmp(how, "unlock twice")) failed = unlock_memory(lock, error);
    if (!strcmp(how, "drop locked")) failed = lock_memory(lock, error);
    if (!strcmp(how, "wrong kind")) failed = call_host("void ImageDataChanged( ImageRef )", &wrong, 1, NULL, error);
    if (!strcmp(how, "wrong count")) failed = call_host("void ImageDataChanged( ImageRef )", &wrong, 0, NULL, error);
    if (!strcmp(how, "null string"))
        wrong.as.object = NULL, failed = call_host("void OkDialog( string )", &wrong, 1, NULL, error);
    if (!strcmp(how, "fail and write")) arguments[2].as.cell->as.f64 = 1, failed = fail(error, "Failed on purpose.");
    if (!strcmp(how, "wrong result")) result->kind = HOST_FLOAT64;
    if (!strcmp(how, "write under read lock") && !lock_memory(lock, error) && !get_slice(lock, &data, info, error)) {
        data[0] += 1;
        unlock_memory(lock, error);
    }
    if (!strcmp(how, "keep a lock")) {
        failed = lock_memory(lock, error);
        kept = lock;
        lock = NULL;
    }
    release(lock);
    release(string);
    return failed;
}

struct script_function
{
    const char* prototype;
    host_native native;
    const char* context;
};
static const struct script_function functions[] = {
    {"long TestDivide( long a, long b, long * rest )", test_divide, NULL},
    {"dm_string TestOverload(double a)", test_overload, "double"},
    {"dm_string TestOverload(complex a)", test_overload, "complex"},
    {"ImageRef TestFill( ImageRef img, float value )", test_fill, NULL},
    {"void TestMisbehave( ImageRef img, string how, double * output )", test_misbehave, NULL}};
enum
{
    function_count = sizeof functions / sizeof *functions
};

static int the_window;

static void* HOST_CALL create_window(void* context, void* parent)
{
    link->table->report_error(link, 0, "window created");
    return parent ? NULL : context;
}

static void HOST_CALL destroy_window(void* context, void* window)
{
    link->table->report_error(link, 0, context == window ? "window destroyed" : "another window destroyed");
}

static void tell(const char* entry)
{
    if (link) link->table->report_error(link, 0, entry);
}

ENTRY int32_t DMPlugIn_GetVersion(void) { return HOST_LINK_PROTOCOL; }

ENTRY void DMPlugIn_Link_2(host_link* given)
{
    if (given == link) return;
    if (given) given->table->add_reference(given);
    if (link) link->table->release(link);
    link = given;
    tell("DMPlugIn_Link_2");
}

ENTRY void PlugInRegisterFloatingWindows(void)
{
    host_floating_window window = {sizeof window, "Test", NULL, &the_window, create_window, destroy_window};
    host_object* error = NULL;
    tell("PlugInRegisterFloatingWindows");
    link->table->register_floating_window(link, &window, &error);
    release(error);
}

ENTRY void PlugInStartup(void)
{
    int i;
    tell("PlugInStartup");
    for (i = 0; i < function_count; ++i) {
        host_object* error = NULL;
        if (link->table->register_function(link, functions[i].prototype, functions[i].native,
                                           (void*)functions[i].context, &error))
            tell("registration failed");
        release(error);
    }
}

ENTRY void PlugInRun(void) { tell("PlugInRun"); }

ENTRY int32_t PlugInRequestClose(void)
{
    tell("PlugInRequestClose");
    return 7;
}

ENTRY void PlugInPrepareClose(void) { tell("PlugInPrepareClose"); }

ENTRY void PlugInCleanup(void) { tell("PlugInCleanup"); }

ENTRY void PlugInShutdown(void)
{
    int i;
    tell("PlugInShutdown");
    for (i = 0; i < function_count; ++i) link->table->withdraw_function(link, functions[i].prototype);
    link->table->withdraw_floating_window(link, "Test");
    kept = NULL; /* forgotten, not released */
}
