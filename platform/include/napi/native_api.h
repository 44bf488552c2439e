#pragma once

/// The Node-API as the device offers it to native modules. Names, shapes and statuses are those of the
/// Node-API manual; where the device is more lenient, its behaviour is the one to rely on:
///  - `napi_create_error` accepts a number as the code and stores it as the property `code`, type number;
///  - a null handle among the arguments of `napi_call_function` reads as `undefined`;
///  - `napi_has_named_property` and `napi_get_named_property` on `undefined` or `null` report the failure by
///    their status alone; an exception that a getter throws stays pending;
///  - `napi_get_uv_event_loop`, `uv_queue_work` and `napi_delete_reference` may be called from any thread,
///    also with an environment that has ended: they then fail with a status.
/// Every other call belongs on the JS thread of its environment.
#include <node_api.h>
