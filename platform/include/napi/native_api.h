#pragma once

/// Node-API as the device offers it to native modules. Names, signatures and statuses are those of the Node-API
/// documentation. Where the device is more lenient, rely on its behaviour:
/// - `napi_create_error` accepts a number as the code and stores it in the property `code` as a number;
/// - a null handle among the arguments of `napi_call_function` counts as `undefined`;
/// - `napi_has_named_property` and `napi_get_named_property` on `undefined` or `null` report the failure only
///   by their status; an exception that a getter throws stays pending;
/// - `napi_get_uv_event_loop`, `uv_queue_work` and `napi_delete_reference` may be called from any thread,
///   even with an environment that has ended: they then fail with a status.
/// Every other call belongs on the JS thread of its environment.
#include <node_api.h>
