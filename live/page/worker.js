// @ts-nocheck the module is emscripten's
// Behind the models' module, in a worker of its own: what takes time doesn't hold the page up.
let models;

async function start(bytes) {
  const unpacked = new Blob([bytes]).stream().pipeThrough(new DecompressionStream('gzip'));
  return zelmModule({ wasmBinary: await new Response(unpacked).arrayBuffer() });
}

onmessage = async ({ data }) => {
  if (data.module) {
    models = start(data.module);
    return;
  }
  try {
    const module = await models;
    const length = module.lengthBytesUTF8(data.request) + 1;
    const request = module._malloc(length);
    module.stringToUTF8(data.request, request, length);
    const began = performance.now();
    const answer = module.UTF8ToString(module._zelm_call(request));
    module._free(request);
    postMessage({ id: data.id, answer, took: performance.now() - began });
  } catch (failure) {
    postMessage({ id: data.id, failed: String(failure) });
  }
};
