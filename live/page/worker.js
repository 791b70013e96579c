// @ts-nocheck the module is emscripten's
// Behind the models' module, in a worker of its own: what takes time doesn't hold the page up.
let models;

// It is compiled while it is unpacked.
async function start(packed) {
  const letters = atob(packed), bytes = new Uint8Array(letters.length);
  for (let i = 0; i < bytes.length; ++i)
    bytes[i] = letters.charCodeAt(i);
  const unpacked = new Blob([bytes]).stream().pipeThrough(new DecompressionStream('gzip'));
  const compiled = await WebAssembly.compileStreaming(new Response(unpacked, { headers: { 'Content-Type': 'application/wasm' } }));
  return zelmModule({
    instantiateWasm(imports, ready) {
      WebAssembly.instantiate(compiled, imports).then(instance => ready(instance));
      return {};
    },
  });
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
