// The live page's models in node: what the tool prints for a design they answer too.
import { readFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { resolve } from 'node:path';

/** A function that answers requests, from the folder with the module. */
export async function models(folder) {
  const make = createRequire(import.meta.url)(resolve(folder, 'zelm-live.js'));
  const module = await make({ wasmBinary: readFileSync(`${folder}/zelm-live.wasm`) });
  return request => {
    const text = JSON.stringify(request);
    const length = module.lengthBytesUTF8(text) + 1;
    const at = module._malloc(length);
    module.stringToUTF8(text, at, length);
    const answer = JSON.parse(module.UTF8ToString(module._zelm_call(at)));
    module._free(at);
    return answer;
  };
}
